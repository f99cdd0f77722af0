// SPDX-License-Identifier: MIT
#include "picture/picture_formats.h"

#include <algorithm>

#include "base/text/ascii_text.h"

namespace {

using namespace std::string_view_literals;
using enum EPictureFormat;

constexpr std::array<CPictureFormat, 9> kFormats{{
    {Jpeg, "image/jpeg", {"jpg", "jpeg", "jpe"}, {"\xFF\xD8\xFF"sv}},
    {Png, "image/png", {"png"}, {"\x89PNG\r\n\x1a\n"sv}},
    {Tga, "image/x-tga", {"tga", "targa", "icb", "vda", "vst"}, {}},
    {Bmp, "image/bmp", {"bmp", "dib"}, {}},
    {Gif, "image/gif", {"gif"}, {"GIF87a"sv, "GIF89a"sv}},
    {Tiff, "image/tiff", {"tif", "tiff"}, {"II*\0"sv, "MM\0*"sv}},
    {Pcx, "image/vnd.zbrush.pcx", {"pcx"}, {}},
    {Sgi, "image/x-sgi", {"sgi", "rgb", "rgba", "bw"}, {"\x01\xDA"sv}},
    {Dds, "image/x-dds", {"dds"}, {"DDS "sv}},
}};

template <class Judge>
EPictureFormat First(const Judge& judge) {
    const auto found = std::ranges::find_if(kFormats, judge);
    return found == kFormats.end() ? Unknown : found->format;
}

}  // namespace

std::span<const CPictureFormat> PictureFormats() {
    return kFormats;
}

EPictureFormat FormatOfEnding(std::string_view ending) {
    if (ending.empty()) return Unknown;
    const auto isIt = [ending](std::string_view known) { return ascii_text::EqualNoCase(known, ending); };
    return First([&](const CPictureFormat& format) { return std::ranges::any_of(format.endings, isIt); });
}

EPictureFormat FormatOfSignature(std::span<const std::byte> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto isIt = [text](std::string_view known) { return !known.empty() && text.starts_with(known); };
    return First([&](const CPictureFormat& format) { return std::ranges::any_of(format.signatures, isIt); });
}
