// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/** The address of a function in one of our plug-ins, which is loaded and stays loaded. Null when the plug-in,
 * or a library that it needs, is not installed. file: as std_file_paths::GetPluginPath takes it. */
[[nodiscard]] void* FunctionOfPlugin(std::string_view file, const char* function);
