// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"
#include "programs/shared/program_output.h"
#include "settings/language_catalogue.h"

/** How the program ends; docs/orbivue-render.1 tells the numbers. */
enum EExit { kDone = 0, kUsage = 1, kCannotRead = 2, kCannotWrite = 3, kNoGraphics = 4 };

/** Prints a message as one line on standard error, and returns the code. */
inline int Complain(const std::string& message, EExit code) {
    PrintError("orbivue-render", message);
    return code;
}
/** The same with an error, in the user's language. */
inline int Complain(const CError& error, EExit code) {
    return Complain(lng::TextForTerminal(error), code);
}
