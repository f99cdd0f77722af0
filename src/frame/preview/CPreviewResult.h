// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/** The result of a CPreviewRequest: a picture with facts, or the reason why there is none. */
struct CPreviewResult {
    std::vector<std::byte> png;   ///< the picture; empty when there is a problem
    std::int64_t triangles = -1;  ///< as drawn; -1: not known
    std::int64_t objects = -1;    ///< as drawn; -1: not known
    std::wstring problem;         ///< one line, translated: why there is no picture; empty when there is one

    bool operator==(const CPreviewResult&) const = default;
};
