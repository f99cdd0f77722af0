// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** What the process answers to its caller. */
enum EExitCode {
    kExitDone = 0,
    kExitFailed = 1,     ///< a conversion that could not read its input or write its output
    kExitBadUsage = 2,   ///< a command line that makes no sense
    kExitNoDisplay = 3,  ///< windows were wanted and none can be shown
};

/** Converts a model to a POV-Ray file with the lighting of the settings. Shows nothing; true
 * when it was written. */
[[nodiscard]] bool ConvertToPov(const std::wstring& input, const std::wstring& output);
