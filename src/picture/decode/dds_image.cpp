// SPDX-License-Identifier: MIT
#include "picture/decode/dds_image.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <optional>
#include <string>

#include "base/byte_order.h"
#include "base/text/lng.h"
#include "files/plugin_function.h"
#include "picture/decode/dxt_blocks.h"

namespace dds_image {
namespace {

using CBytes = std::span<const std::byte>;

// Where DDS_HEADER and the DDS_PIXELFORMAT in it have what we read, counted from the file's first byte.
constexpr std::size_t kHeaderSizeAt = 4, kHeightAt = 12, kWidthAt = 16, kFlagsAt = 80, kFourCcAt = 84,
                      kBitsAt = 88, kMasksAt = 92, kPixelsAt = 128;
constexpr std::uint32_t kHeaderSize = 124;
constexpr std::uint32_t kHasAlpha = 0x1, kIsFourCc = 0x4, kIsRgb = 0x40, kIsLuminance = 0x20000;

CError Unsupported(std::string what) {
    return {EErrorCode::Unsupported, "DDS pictures " + std::move(what) + " are not read", {}};
}

CError EndsEarly() {
    return {EErrorCode::BadFormat, lng::Mark("the picture's data ends early"), {}};
}

CImage MakeImage(CBytes bytes) {
    const std::size_t width = byte_order::Le32(bytes, kWidthAt), height = byte_order::Le32(bytes, kHeightAt);
    CImage image{static_cast<int>(width), static_cast<int>(height), {}};
    image.rgba.resize(width * height * 4);
    return image;
}

/** Some writers say that there is alpha and leave it 0. */
void ShowIfWhollyTransparent(CImage& image) {
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        if (image.rgba[i] != 0) return;
    }
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) image.rgba[i] = 255;
}

/** The code as the file has it, for people. */
std::string CodeText(CBytes bytes) {
    std::string code;
    for (std::size_t at = kFourCcAt; at < kFourCcAt + 4; ++at) {
        const auto c = static_cast<char>(byte_order::At8(bytes, at));
        code += c > ' ' && c < 0x7F ? c : '?';
    }
    return code;
}

std::optional<EDxt> PackingOf(CBytes bytes) {
    const std::string code = CodeText(bytes);
    if (code == "DXT1") return EDxt::Dxt1;
    if (code == "DXT3") return EDxt::Dxt3;
    if (code == "DXT5") return EDxt::Dxt5;
    return std::nullopt;
}

FUnpackDxt Unpacker() {
    static const auto unpack =
        reinterpret_cast<FUnpackDxt>(FunctionOfPlugin("orbivue_dxt_blocks.so", kUnpackDxtName));
    return unpack;
}

/** Copies what lies inside the picture of a row of unpacked blocks, whose first line is y. */
void CopyBlocks(const std::vector<std::uint8_t>& blocks, std::size_t y, CImage& image) {
    const auto width = static_cast<std::size_t>(image.width), height = static_cast<std::size_t>(image.height);
    for (std::size_t line = 0; line < std::min<std::size_t>(4, height - y); ++line) {
        for (std::size_t x = 0; x < width; x += 4) {
            std::memcpy(&image.rgba[((y + line) * width + x) * 4],
                        &blocks[x / 4 * kDxtUnpackedBytes + line * 16],
                        std::min<std::size_t>(4, width - x) * 4);
        }
    }
}

CResult<CImage> DecodeDxt(CBytes bytes, EDxt packing) {
    const FUnpackDxt unpack = Unpacker();
    if (unpack == nullptr)
        return CError{EErrorCode::Unsupported, lng::Mark("the decoder of this picture is not installed"), {}};
    const std::size_t across = (std::size_t{byte_order::Le32(bytes, kWidthAt)} + 3) / 4;
    const std::size_t down = (std::size_t{byte_order::Le32(bytes, kHeightAt)} + 3) / 4;
    const std::size_t rowBytes = across * DxtBlockBytes(packing);
    if (bytes.size() < kPixelsAt || bytes.size() - kPixelsAt < rowBytes * down) return EndsEarly();
    CImage image = MakeImage(bytes);
    std::vector<std::uint8_t> unpacked(across * kDxtUnpackedBytes);
    for (std::size_t row = 0; row < down; ++row) {
        unpack(packing, &bytes[kPixelsAt + row * rowBytes], across, unpacked.data());
        CopyBlocks(unpacked, row * 4, image);
    }
    ShowIfWhollyTransparent(image);
    return image;
}

/** One channel of a pixel: the bits of a mask, brought to 0..255. */
class CChannel {
  public:
    CChannel(std::uint32_t mask, std::uint8_t ifNone) : m_mask(mask) {
        if (mask == 0) {
            m_values.fill(ifNone);
            return;
        }
        // Of a channel of over eight bits the upper eight count.
        m_shift = std::max(std::countr_zero(mask), static_cast<int>(std::bit_width(mask)) - 8);
        const std::uint32_t largest = mask >> m_shift;
        for (std::uint32_t i = 0; i < m_values.size(); ++i) {
            m_values[i] = static_cast<std::uint8_t>((std::min(i, largest) * 255 + largest / 2) / largest);
        }
    }
    [[nodiscard]] std::uint8_t Of(std::uint32_t pixel) const { return m_values[(pixel & m_mask) >> m_shift]; }

  private:
    std::uint32_t m_mask;
    int m_shift = 0;
    std::array<std::uint8_t, 256> m_values{};
};

std::array<CChannel, 4> ChannelsOf(CBytes bytes, std::uint32_t flags) {
    const auto mask = [&](std::size_t channel) { return byte_order::Le32(bytes, kMasksAt + channel * 4); };
    const CChannel alpha((flags & kHasAlpha) != 0 ? mask(3) : 0, 255), first(mask(0), 0);
    if ((flags & kIsRgb) == 0) return {first, first, first, alpha};  // grey: the first mask is the light's
    return {first, CChannel(mask(1), 0), CChannel(mask(2), 0), alpha};
}

CResult<CImage> DecodePlain(CBytes bytes, std::uint32_t flags) {
    const std::uint32_t bits = byte_order::Le32(bytes, kBitsAt);
    if (bits != 8 && bits != 16 && bits != 24 && bits != 32)
        return Unsupported("of " + std::to_string(bits) + " bits a pixel");
    const std::size_t pixelBytes = bits / 8;
    const std::size_t count =
        std::size_t{byte_order::Le32(bytes, kWidthAt)} * byte_order::Le32(bytes, kHeightAt);
    // Lines follow one another without a gap; the guide advises against believing the header's pitch.
    if (bytes.size() < kPixelsAt || (bytes.size() - kPixelsAt) / pixelBytes < count) return EndsEarly();
    CImage image = MakeImage(bytes);
    const std::array<CChannel, 4> channels = ChannelsOf(bytes, flags);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t pixel = 0;
        for (std::size_t k = 0; k < pixelBytes; ++k)
            pixel |= static_cast<std::uint32_t>(bytes[kPixelsAt + i * pixelBytes + k]) << (8 * k);
        for (std::size_t k = 0; k < 4; ++k) image.rgba[i * 4 + k] = channels[k].Of(pixel);
    }
    ShowIfWhollyTransparent(image);
    return image;
}

}  // namespace

CResult<CImage> Decode(std::span<const std::byte> bytes) {
    if (byte_order::Le32(bytes, kHeaderSizeAt) != kHeaderSize)
        return CError{EErrorCode::BadFormat, lng::Mark("the picture's header is damaged"), {}};
    const std::uint32_t flags = byte_order::Le32(bytes, kFlagsAt);
    if ((flags & kIsFourCc) != 0) {
        const std::optional<EDxt> packing = PackingOf(bytes);
        return packing ? DecodeDxt(bytes, *packing) : Unsupported("of the kind " + CodeText(bytes));
    }
    if ((flags & (kIsRgb | kIsLuminance)) != 0) return DecodePlain(bytes, flags);
    return Unsupported("without colours");
}

}  // namespace dds_image
