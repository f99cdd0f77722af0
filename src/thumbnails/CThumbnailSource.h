// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/** The name of the thumbnails of an address: its MD5, and ".png". Empty where the system's library has no MD5. */
[[nodiscard]] std::string ThumbnailNameOf(std::string_view uri);

/** A state of a file that has a thumbnail, or may get one. */
struct CThumbnailSource {
    std::string path;             ///< absolute, without "." and ".."
    std::string uri;              ///< its address in the form that all programs give it (file_uri::Of)
    std::string name;             ///< of its thumbnails
    std::int64_t changedSec = 0;  ///< when it was written last, in seconds as the rules want it
    std::uint64_t bytes = 0;

    /** The file's present state. Nothing unless the path is absolute and leads to a regular file. */
    [[nodiscard]] static std::optional<CThumbnailSource> Of(std::string_view path);
};
