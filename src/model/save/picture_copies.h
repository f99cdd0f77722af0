// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/textures/CTextureLocator.h"

struct Lib3dsFile;

/** The pictures of a scene that was saved into another folder. */
namespace picture_copies {

/** The pictures that a scene saved at path (UTF-8) would not find from there, or only with other bytes, under
 * the names that its materials have. A CTexturesOfScene must tell where the scene's pictures lie. */
[[nodiscard]] CImageDataTextVec MissingAt(Lib3dsFile* scene, std::string_view path);

/** Writes pictures into a folder, "red/hull.jpg" into its folder "red", which is made where it is missing. Replaces nothing that has such a name there, not even a link. Returns the
 * names of the pictures that could not be written. */
[[nodiscard]] std::vector<std::string> CopyInto(std::string_view folder, const CImageDataTextVec& pictures);

}  // namespace picture_copies
