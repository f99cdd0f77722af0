// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

struct Lib3dsFile;

namespace lib3ds_util {

/** Gives the file name of every map and mask of every material another extension ("jpg", without a dot),
 * added where it has none. A name that would not fit lib3ds' 64 bytes keeps its own. Null does nothing. */
void change_textures_ext(  // NOLINT(readability-identifier-naming): after the manner of lib3ds
    Lib3dsFile* file, std::string_view ext);

}  // namespace lib3ds_util
