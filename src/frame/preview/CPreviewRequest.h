// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>

/** What to draw for one selected file. Equal requests give the same picture. Paths are UTF-8. */
struct CPreviewRequest {
    std::string path;                          ///< the file that is selected
    std::uint64_t bytes = 0;                   ///< its size
    std::int64_t changedNs = 0;                ///< when it was last written
    std::string modelPath;                     ///< the file to draw, a scene script too; empty: none
    std::int64_t modelChangedNs = 0;           ///< when that one was last written, of a script its model
    int sidePx = 0;                            ///< width and height of the picture
    std::array<std::uint8_t, 3> background{};  ///< red, green, blue

    bool operator==(const CPreviewRequest&) const = default;
};
