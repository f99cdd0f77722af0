// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

/** A command line for the toolkit's wxExecute: each argument in double quotes, separated by single blanks. A quote and a
 * backslash in an argument have a backslash before them; so the toolkit, which uses no shell, gives the program exactly
 * these arguments, blanks, quotes and line breaks among them. */
[[nodiscard]] std::wstring CommandLineOf(std::span<const std::wstring> arguments);
