// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/textures/CTextureLocator.h"

struct Lib3dsFile;

/** The pictures of a scene that was saved into another folder. */
namespace picture_copies {

/** Those that the scene saved at path (UTF-8) does not find from there; with the names that its materials
 * have. The view that owns the scene must have made known where its pictures lie (CTexturesOfScene). */
[[nodiscard]] CImageDataTextVec MissingAt(Lib3dsFile* scene, std::string_view path);

/** Writes pictures into a folder. What has such a name there, be it a link, stays as it is. The names of those
 * that could not be written. */
[[nodiscard]] std::vector<std::string> CopyInto(std::string_view folder, const CImageDataTextVec& pictures);

}  // namespace picture_copies
