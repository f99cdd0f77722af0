// SPDX-License-Identifier: MIT
#pragma once

#include "picture/decode/decoders.h"

namespace picture_decoders {

/** Whether the first directory of a classic TIFF may be given to libtiff, which reads all its values before it can be
 * asked anything, and would take gigabytes for a file of many that share their bytes: a directory of at most 200
 * entries whose values lie inside the file and together are no longer than it. */
[[nodiscard]] CStatus CheckTiffDirectory(CBytes bytes);

}  // namespace picture_decoders
