// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

/** Writes a scene of that many triangles, the same on every run: for measurements.
 *
 * Bumpy torus patches as large as the format's 16-bit counts allow, with texture coordinates, eight smoothing
 * bands and twenty materials in bands (six textured, two transparent, two two-sided) on every patch; a
 * hierarchy of three levels that turns and moves, pivots, an instance of every tenth mesh, a camera, an omni
 * light and a spotlight. texture is the name that materials refer to. Throws std::runtime_error when the file
 * cannot be written. */
void MakeLargeScene(long triangles, const std::filesystem::path& path,
                    const std::string& texture = "CHECKER.JPG");
