// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>

#include "base/math/CVec.h"
#include "picture/CImage.h"

/** The colour, 0..1, of a point of a picture; u to the right and v upwards, both 0..1. */
using CPainter = std::function<CVec3(float u, float v)>;

[[nodiscard]] CImage Paint(int width, int height, const CPainter& painter);
/** Writes a picture in the format that the extension (.png, .jpg, .tga; any case) names, making its folder.
 * Throws std::runtime_error when it cannot. */
void SavePicture(const CImage& image, const std::filesystem::path& path);
