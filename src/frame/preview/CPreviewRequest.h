// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>

/** What is to be drawn for one selected file. Two that are equal give the same picture. Paths are UTF-8. */
struct CPreviewRequest {
    std::string path;                 ///< the file that is selected
    std::uint64_t bytes = 0;          ///< its size
    std::int64_t changedNs = 0;       ///< when it was last written
    std::string modelPath;            ///< the file to draw, which a scene script names; empty: there is none
    std::int64_t modelChangedNs = 0;  ///< when that one was last written
    int sidePx = 0;                   ///< width and height of the picture
    std::array<std::uint8_t, 3> background{};  ///< red, green, blue

    bool operator==(const CPreviewRequest&) const = default;
};
