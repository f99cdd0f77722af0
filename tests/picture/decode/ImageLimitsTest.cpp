// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "error_code_of.h"
#include "picture/decode/picture_bytes.h"
#include "picture/image_writer.h"
#include "row_name.h"

using namespace std::string_literals;
using image_codec::CDecodeLimits;

namespace {

CResult<image_codec::CDecodedImage> DecodeWithin(std::string_view bytes, const CDecodeLimits& limits) {
    return image_codec::DecodeImage(std::as_bytes(std::span(bytes)), "", limits);
}

// Five by three; the second column from the left is brighter.
constexpr unsigned kWidth = 5, kHeight = 3;
std::uint8_t Level(unsigned x, unsigned y) {
    return static_cast<std::uint8_t>(10 * y + (x == 1 ? 200 : 0));
}
std::string Rows(unsigned bytesOfPixel) {
    std::string data;
    for (unsigned i = 0; i < kWidth * kHeight; ++i)
        data += std::string(bytesOfPixel, static_cast<char>(Level(i % kWidth, i / kWidth)));
    return data;
}
std::string Tga() {
    return "\0\0\2"s + std::string(9, '\0') + Le16(kWidth) + Le16(kHeight) + "\x18\x20" + Rows(3);
}
std::string Sgi() {
    std::string bytes = "\x01\xDA\0\1\0\2"s + Be16(kWidth) + Be16(kHeight) + "\0\1"s;
    bytes.resize(512, '\0');
    const std::string rows = Rows(1);
    for (unsigned y = kHeight; y-- > 0;) bytes += rows.substr(std::size_t{y} * kWidth, kWidth);
    return bytes;
}
std::string Png() {
    CImage image{kWidth, kHeight, {}};
    for (const char c : Rows(4)) image.rgba.push_back(static_cast<std::uint8_t>(c));
    return CTestFolder::TextOf(image_codec::PngBytes(image, false).Value());
}

struct CReduced {
    const char* name;
    std::string bytes;
};
class ReducedPictureTest : public testing::TestWithParam<CReduced> {};

TEST_P(ReducedPictureTest, AveragesWhatDoesNotFit) {
    const auto half = DecodeWithin(GetParam().bytes, {3 * 2 * 4});
    ASSERT_TRUE(half) << half.Error().Text();
    EXPECT_EQ(half.Value().reduction, 2);
    EXPECT_EQ(half.Value().image.width, 3);
    EXPECT_EQ(half.Value().image.height, 2);
    // Squares at the right and the lower side are cut.
    EXPECT_EQ(Hex(half.Value().image), "696969ff 050505ff 050505ff 787878ff 141414ff 141414ff");
    const auto eighth = DecodeWithin(GetParam().bytes, {1 * 1 * 4});
    ASSERT_TRUE(eighth) << eighth.Error().Text();
    EXPECT_EQ(eighth.Value().reduction, 8);
    EXPECT_EQ(Hex(eighth.Value().image), "323232ff");
    EXPECT_EQ(DecodeWithin(GetParam().bytes, {3}).Error().code, EErrorCode::TooLarge);
}

const CReduced kReduced[] = {{"FromAbove", Tga()}, {"FromBelow", Sgi()}, {"Png", Png()}};
INSTANTIATE_TEST_SUITE_P(Kinds, ReducedPictureTest, testing::ValuesIn(kReduced), kRowName);

// Seven by five pixels: a quarter has two by two.
TEST(ImageLimitsTest, EachFormatIsReducedAndRefusedPastTheLimit) {
    for (const char* name : {"bmp24.bmp", "bmp_rle8.bmp", "tga24.tga", "pcx8.pcx", "sgi_packed_rgba.sgi",
                             "gif.gif", "dxt5.dds", "dds_grey.dds", "png24.png", "png32_interlaced.png",
                             "jpeg.jpg", "jpeg_progressive.jpg", "tiff.tif"}) {
        const auto decoded = DecodeWithin(Seed(name), {2 * 2 * 4});
        ASSERT_TRUE(decoded) << name << decoded.Error().Text();
        EXPECT_EQ(decoded.Value().reduction, 4) << name;
        EXPECT_EQ(decoded.Value().image.rgba.size(), 16U) << name;
        // JPEG may have eight times as many, as it is reduced while it is read.
        EXPECT_EQ(CodeOf(DecodeWithin(Seed(name), {.pixels = 4})), EErrorCode::TooLarge) << name;
    }
}

}  // namespace
