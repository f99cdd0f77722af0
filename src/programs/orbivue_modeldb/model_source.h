// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "base/CResult.h"

/** A model's file that is to be imported. */
struct CModelSource {
    std::string path;
    std::uint64_t bytes = 0;
};

/** The 3DS files that a path stands for: itself, or all in a folder and below, in the order of their paths. Links are not
 * followed, and hidden folders are not entered. NotFound, Unreadable: the path itself. */
[[nodiscard]] CResult<std::vector<CModelSource>> FindModels(const std::string& path);
