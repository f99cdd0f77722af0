// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "modeldb/client/CBlobData.h"
#include "modeldb/client/CModelLibrary.h"

/** The most bytes of a model with all its textures. */
constexpr std::uint64_t kMostModelBytes = 512ULL << 20;

struct CDownloadedModel {
    std::string name, group;
    CBlobData file;
    CImageDataTextVec textures;
};

/** Gets a model into memory. BadFormat: what the library tells of it is not so. TooLarge: over kMostModelBytes. */
[[nodiscard]] CResult<CDownloadedModel> DownloadFrom(CModelLibrary& library, std::uint32_t key,
                                                     CProgressUnits& units);

/** Gets a model's preview. NotFound: it has none. BadFormat: it is neither PNG nor JPEG. */
[[nodiscard]] CResult<std::vector<std::byte>> PreviewFrom(CModelLibrary& library, std::uint32_t key);
