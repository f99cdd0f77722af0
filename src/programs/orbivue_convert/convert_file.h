// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "base/CResult.h"
#include "model/scene/CSceneNote.h"

struct CConversion;
struct CConvertOptions;

/** Converts one file in this process. The output is replaced in one step; after a failure it is as before. notes: what of
 * the model or the script could not be used. */
[[nodiscard]] CStatus ConvertFile(const CConversion& conversion, const CConvertOptions& options,
                                  std::vector<CSceneNote>& notes);
