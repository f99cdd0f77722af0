// SPDX-License-Identifier: MIT
// Pictures: whatever the bytes are, decoding ends within its limits, and what it gives is whole. With PICTURE_FORMAT set to
// an ending ("tga") only pictures of that format are decoded.
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

#include "picture/decode/image_codec.h"

namespace {

using image_codec::CDecodeLimits;
using image_codec::CPictureClaim;

bool IsWanted(EPictureFormat format) {
    static const char* const only = std::getenv("PICTURE_FORMAT");  // NOLINT(concurrency-mt-unsafe)
    return only == nullptr || FormatOfEnding(only) == format;
}

void Decode(std::span<const std::byte> bytes, std::string_view name, const CPictureClaim& claim) {
    constexpr CDecodeLimits kLimits{64 << 10, 64 << 10};  // small, so that many are decoded in a second
    const auto decoded = image_codec::DecodeImage(bytes, name, kLimits);
    if (!decoded) return;
    const auto& [image, reduction] = decoded.Value();
    const auto divisor = static_cast<std::uint64_t>(reduction);
    const auto width = static_cast<std::uint64_t>(image.width),
               height = static_cast<std::uint64_t>(image.height);
    const bool isWhole = image.rgba.size() == width * height * 4 && image.rgba.size() <= kLimits.bytes;
    const bool isAsClaimed =
        width == (claim.width + divisor - 1) / divisor && height == (claim.height + divisor - 1) / divisor;
    if (image.IsEmpty() || !isWhole || !isAsClaimed) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    EPictureFormat before = EPictureFormat::Unknown;
    // TGA files have no signature: by its name any file may be one.
    for (const std::string_view name : {"", "x.tga"}) {
        const auto claim = image_codec::ClaimOf(bytes, name);
        if (!claim || claim.Value().format == before) continue;
        before = claim.Value().format;
        if (IsWanted(before)) Decode(bytes, name, claim.Value());
    }
    return 0;
}
