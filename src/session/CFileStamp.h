// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/** Tells a file from what it was before: two equal stamps mean that nobody wrote or replaced it meanwhile. */
struct CFileStamp {
    std::uint64_t bytes = 0;
    std::int64_t changedNs = 0;  ///< when its contents were written last
    std::uint64_t device = 0, inode = 0;

    /** Of the file that a path (UTF-8) leads to; nothing where there is none. */
    [[nodiscard]] static std::optional<CFileStamp> Of(std::string_view path);
    friend bool operator==(const CFileStamp&, const CFileStamp&) = default;
};
