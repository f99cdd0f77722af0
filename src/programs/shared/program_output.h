// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/** Prints "program: message" as one line on standard error; whatever files are called, nothing in it controls a
 * terminal. */
void PrintError(std::string_view program, const std::string& message);
/** Prints on standard output; false when not all of it could be written. */
[[nodiscard]] bool Print(const std::string& text);
