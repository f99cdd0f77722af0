// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** The address of the list of versions: the one of settings.ini (UpdateFeed), else the one that the program was built with.
 * Empty: there is none. */
[[nodiscard]] std::string UpdateFeed();

/** The program was built as a package of a system, whose package manager updates it. */
[[nodiscard]] bool IsPackaged();
