// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** What an errno value means, for CError::message: a literal for the catalogue for all that befalls files;
 * the system's own words for the rest. */
[[nodiscard]] std::string SystemErrorText(int errorNumber);
