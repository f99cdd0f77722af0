// SPDX-License-Identifier: MIT
#include "files/plugin_function.h"

#include <dlfcn.h>

#include "files/std_file_paths.h"

void* FunctionOfPlugin(std::string_view file, const char* function) {
    void* plugin = ::dlopen(std_file_paths::GetPluginPath(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    return plugin != nullptr ? ::dlsym(plugin, function) : nullptr;
}
