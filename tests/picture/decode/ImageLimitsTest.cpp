// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "files/CTestFolder.h"
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

std::string Seed(std::string_view name) {
    return CTestFolder::TextOf(ORBIVUE_PICTURE_SEEDS + std::string(name));
}

// Seven by five pixels: a quarter has two by two.
TEST(ImageLimitsTest, EachFormatIsReduced) {
    for (const char* name : {"bmp24.bmp", "bmp_rle8.bmp", "tga24.tga", "pcx8.pcx", "sgi_packed_rgba.sgi",
                             "gif.gif", "dxt5.dds", "dds_grey.dds", "png24.png", "png32_interlaced.png",
                             "jpeg.jpg", "jpeg_progressive.jpg", "tiff.tif"}) {
        const auto decoded = DecodeWithin(Seed(name), {2 * 2 * 4});
        ASSERT_TRUE(decoded) << name << decoded.Error().Text();
        EXPECT_EQ(decoded.Value().reduction, 4) << name;
        EXPECT_EQ(decoded.Value().image.rgba.size(), 16U) << name;
    }
}

struct CTooMuch {
    const char* name;
    std::string bytes;
    EErrorCode code = EErrorCode::TooLarge;
};
class TooMuchTest : public testing::TestWithParam<CTooMuch> {};

TEST_P(TooMuchTest, IsRefusedBeforeMemoryIsTaken) {
    const auto decoded = DecodeWithin(GetParam().bytes, {});
    ASSERT_FALSE(decoded);
    EXPECT_EQ(decoded.Error().code, GetParam().code) << decoded.Error().Text();
}

std::string With(std::string bytes, std::size_t at, std::string_view part) {
    return bytes.replace(at, part.size(), part);
}
/** A TIFF of one row whose directory has entry in the place of the one for the samples of a pixel. */
std::string Tiff(std::string_view entry) {
    const auto shortValue = [](unsigned tag, unsigned value) {
        return Le16(tag) + Le16(3) + Le32(1) + Le32(value);
    };
    const auto longValue = [](unsigned tag, unsigned value) {
        return Le16(tag) + Le16(4) + Le32(1) + Le32(value);
    };
    return "II*\0"s + Le32(8) + Le16(9) + shortValue(256, 4) + shortValue(257, 1) + shortValue(258, 8) +
           shortValue(259, 1) + shortValue(262, 1) + longValue(273, 0) + std::string(entry) +
           shortValue(278, 1) + longValue(279, 4) + Le32(0);
}
std::string TiffOfManyValues() {
    std::string bytes = "II*\0"s + Le32(8) + Le16(102);
    for (const unsigned tag : {256U, 257U}) bytes += Le16(tag) + Le16(3) + Le32(1) + Le32(1);
    for (unsigned i = 0; i < 100; ++i) bytes += Le16(40000 + i) + Le16(1) + Le32(1200) + Le32(8);
    return bytes + Le32(0);
}
std::string JpegOfManyScans() {
    std::string bytes = Seed("jpeg_progressive.jpg");
    for (int i = 0; i < 101; ++i) bytes += "\xFF\xDA";
    return bytes;
}

const CTooMuch kTooMuch[] = {
    {"BmpRunsThatJump", With(Seed("bmp_jumps.bmp"), 18, Le32(9000) + Le32(7000)), EErrorCode::BadFormat},
    {"BmpOfPlainPixels", With(Seed("bmp24.bmp"), 18, Le32(16384) + Le32(16384)), EErrorCode::BadFormat},
    {"PcxRunsOfNothing",
     With(Seed("pcx8.pcx"), 8, Le16(16000) + Le16(16000) + std::string(53, '\0') + "\1"s + Le16(16002)),
     EErrorCode::BadFormat},
    {"SgiRowsThatShareBytes", With(Seed("sgi_packed_grey.sgi"), 6, Be16(16384)), EErrorCode::BadFormat},
    {"SgiTablesBeyondItsEnd", With(Seed("sgi_packed_grey.sgi"), 8, Be16(9999)), EErrorCode::BadFormat},
    {"GifScreen", With(Seed("gif.gif"), 6, Le16(16384) + Le16(16384)), EErrorCode::BadFormat},
    {"DdsBlocks", With(Seed("dxt1.dds"), 12, Le32(16384) + Le32(16384)), EErrorCode::BadFormat},
    {"JpegScans", JpegOfManyScans()},
    {"JpegCoefficients", With(Seed("jpeg_progressive.jpg"), Seed("jpeg_progressive.jpg").find("\xFF\xC2") + 5,
                              Be16(16384) + Be16(16384))},
    {"TiffSamples", Tiff(Le16(277) + Le16(3) + Le32(1) + Le32(6)), EErrorCode::Unsupported},
    {"BigTiff", With(Seed("tiff.tif"), 0, "II+\0"s), EErrorCode::Unsupported},
    {"TiffValueOutside", Tiff(Le16(40000) + Le16(2) + Le32(5) + Le32(0xFFFFFFF0)), EErrorCode::BadFormat},
    {"TiffValuesThatShareBytes", TiffOfManyValues(), EErrorCode::BadFormat},
};
INSTANTIATE_TEST_SUITE_P(Kinds, TooMuchTest, testing::ValuesIn(kTooMuch), kRowName);

}  // namespace
