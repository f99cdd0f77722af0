// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "picture/CImage.h"

/** The icon that a scene of a scene script (UTF-8 path) names, made small enough for the side; it stands for the script in
 * lists and file managers. Nothing for other files, and where there is none that can be read. */
[[nodiscard]] std::optional<CImage> IconOf(const std::string& input, std::size_t scene, int sidePx);
