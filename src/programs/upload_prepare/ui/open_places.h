// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/** Opens folders and addresses with the desktop's programs for them, and says so where that fails. Windows repaint
 * meanwhile. */
void OpenPlaces(const std::vector<std::string>& places);
