// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/** Identifies a state of a file: two equal stamps mean that nobody wrote or replaced the file
 * between them. */
struct CFileStamp {
    std::uint64_t bytes = 0;
    std::int64_t changedNs = 0;  ///< when its contents were written last
    std::uint64_t device = 0, inode = 0;

    /** The stamp of the file at a path (UTF-8); nothing if there is no such file. */
    [[nodiscard]] static std::optional<CFileStamp> Of(std::string_view path);
    friend bool operator==(const CFileStamp&, const CFileStamp&) = default;
};
