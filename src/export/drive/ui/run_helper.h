// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** Runs a command line of CommandLineOf with the user's environment (CUserEnvironment) and returns when the program has
 * ended. Windows stay enabled and handle events meanwhile. What it prints and how it ends is not looked at. */
void RunHelper(const std::wstring& commandLine);
