// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "base/CResult.h"

class CScene;

/** The scene, edits included, as the bytes of a 3DS file, written by lib3ds: hierarchy, keyframes, cameras,
 * lights and materials as the Lib3dsFile has them. Colours and percentages are rounded to the format's
 * 8-bit steps and whole per cents; what does not fit the format (a mesh of more than 65,535 points or
 * faces) is Unsupported. */
[[nodiscard]] CResult<std::vector<std::byte>> SceneTo3ds(CScene& scene);

/** Writes SceneTo3ds to a path (UTF-8), replaced in one step: after a failure the old file is as before. */
[[nodiscard]] CStatus WriteScene(CScene& scene, std::string_view path);
