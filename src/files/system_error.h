// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** The meaning of an errno value, for CError::message: a literal of the catalogue for all usual errors of
 * files, the system's own text for the rest. */
[[nodiscard]] std::string SystemErrorText(int errorNumber);
