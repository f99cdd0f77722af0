// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"
#include "modeldb/store/CModelStore.h"

/** Reads a 3DS file with the pictures that its materials name, as the viewer would find them, and packs all. What the
 * reader refuses is refused. store: takes large bytes, see CBlobWriter; null where several threads do this. */
[[nodiscard]] CResult<CNewModel> ReadModel(const std::string& path, const std::string& group,
                                           CModelStore* store);
