// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** Exit codes of the program. */
enum EExitCode {
    kExitDone = 0,
    kExitFailed = 1,     ///< a conversion that could not read its input or write its output
    kExitBadUsage = 2,   ///< a wrong command line
    kExitNoDisplay = 3,  ///< windows are needed but there is no display
};

/** Converts a model to a POV-Ray file with the lighting of the settings. Shows no window. True when the file
 * was written. */
[[nodiscard]] bool ConvertToPov(const std::wstring& input, const std::wstring& output);
