// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

enum class EPictureFormat { Unknown, Jpeg, Png, Tga, Bmp, Gif, Tiff, Pcx, Sgi, Dds };

/** A kind of picture that is read. */
struct CPictureFormat {
    EPictureFormat format = EPictureFormat::Unknown;
    std::string_view mime;                         ///< as the shared MIME database names it
    std::array<std::string_view, 5> endings{};     ///< of file names, lower case, the usual one first
    std::array<std::string_view, 2> signatures{};  ///< its files begin with one of them; none: no signature
};

/** All kinds, the likeliest first: of pictures whose names differ only in the ending, the first kind
 * is taken. */
[[nodiscard]] std::span<const CPictureFormat> PictureFormats();

/** The kind whose files have the ending (any case, without dot); Unknown for any other. */
[[nodiscard]] EPictureFormat FormatOfEnding(std::string_view ending);
/** The kind whose signature the bytes begin with; Unknown also for those that have none. */
[[nodiscard]] EPictureFormat FormatOfSignature(std::span<const std::byte> bytes);
