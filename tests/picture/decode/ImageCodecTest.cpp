// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "picture/decode/picture_bytes.h"
#include "row_name.h"

using namespace std::string_literals;

namespace {

// Two pixels in a row, red and half-transparent or opaque blue, as each format stores them.
std::string TgaHeader(unsigned type, unsigned width, unsigned height, unsigned bits) {
    return "\0\0"s + static_cast<char>(type) + std::string(9, '\0') + Le16(width) + Le16(height) +
           static_cast<char>(bits) + '\x20';
}
std::string Tga24() {
    return TgaHeader(2, 2, 1, 24) + "\0\0\xFF\xFF\0\0"s;
}
std::string Bmp(unsigned width = 2, unsigned height = 1) {
    return "BM" + Le32(62) + Le32(0) + Le32(54) + Le32(40) + Le32(width) + Le32(height) + Le16(1) + Le16(24) +
           std::string(24, '\0') + "\0\0\xFF\xFF\0\0\0\0"s;
}
std::string Gif(unsigned width = 2, unsigned height = 1) {
    return "GIF89a" + Le16(2) + Le16(1) + "\x80\0\0\xFF\0\0\0\0\xFF,"s + Le32(0) + Le16(width) +
           Le16(height) + "\0\x02\x02\x44\x0A\0;"s;
}
std::string Tiff(unsigned width = 2) {
    const auto entry = [](unsigned tag, unsigned type, unsigned count, unsigned value) {
        return Le16(tag) + Le16(type) + Le32(count) + Le32(value);
    };
    return "II*\0"s + Le32(20) + "\xFF\0\0\0\0\xFF"s + "\x08\0\x08\0\x08\0"s + Le16(9) +
           entry(256, 3, 1, width) + entry(257, 3, 1, 1) + entry(258, 3, 3, 14) + entry(259, 3, 1, 1) +
           entry(262, 3, 1, 2) + entry(273, 4, 1, 8) + entry(277, 3, 1, 3) + entry(278, 3, 1, 1) +
           entry(279, 4, 1, 6) + Le32(0);
}
std::string Pcx(unsigned right = 1) {
    return "\x0A\x05\x01\x08"s + Le32(0) + Le16(right) + Le16(0) + Le32(0) + std::string(48, '\0') +
           "\0\x03"s + Le16(2) + std::string(60, '\0') + "\xC1\xFF\0\0\0\0\xC1\xFF"s;
}
std::string Dds(std::string_view pixelFormat, std::string_view pixels, unsigned width = 2,
                unsigned height = 1) {
    std::string bytes = "DDS " + Le32(124) + Le32(0x1007) + Le32(height) + Le32(width) +
                        std::string(56, '\0') + Le32(32) + std::string(pixelFormat);
    bytes.resize(128, '\0');
    return bytes.append(pixels);
}
std::string DdsPacked(const char* code, std::string_view pixels, unsigned width = 2, unsigned height = 1) {
    return Dds(Le32(4) + code, pixels, width, height);
}
std::string DdsMasked(unsigned flags, unsigned bits, std::array<unsigned, 4> masks, std::string_view pixels,
                      unsigned width = 2) {
    std::string format = Le32(flags) + Le32(0) + Le32(bits);
    for (const unsigned mask : masks) format += Le32(mask);
    return Dds(format, pixels, width);
}
// Red where the index is 0, blue where it is 1.
const std::string kRedBlue = "\x00\xF8\x1F\x00"s, kFirstRedThenBlue = kRedBlue + "\x04\0\0\0"s;
std::string Dxt1(unsigned width = 2) {
    return DdsPacked("DXT1", kFirstRedThenBlue, width);
}
std::string Dds24() {
    return DdsMasked(0x40, 24, {0xFF0000, 0xFF00, 0xFF, 0}, "\0\0\xFF\xFF\0\0"s);
}
std::string DdsRgba(std::string_view pixels) {
    return DdsMasked(0x41, 32, {0xFF, 0xFF00, 0xFF0000, 0xFF000000}, pixels);
}

struct CFormatCase {
    const char* name;
    std::string bytes;
    std::uint8_t secondAlpha = 255;
};
class ImageFormatTest : public testing::TestWithParam<CFormatCase> {};

TEST_P(ImageFormatTest, GivesRedThenBlueByContentAlone) {
    const auto image = Decode(GetParam().bytes, "misleading.png");
    ASSERT_TRUE(image) << image.Error().Text();
    EXPECT_TRUE(image.Value().width == 2 && image.Value().height == 1);
    const std::vector<std::uint8_t> expected = {255, 0, 0, 255, 0, 0, 255, GetParam().secondAlpha};
    EXPECT_EQ(image.Value().rgba, expected);
}

TEST_P(ImageFormatTest, EveryPrefixAndChangedByteHasAClearOutcome) {
    const std::string whole = GetParam().bytes;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (const int change : {-1, 0x01, 0x80, 0xFF}) {
            std::string bytes = change < 0 ? whole.substr(0, i) : whole;
            if (change >= 0) bytes[i] = static_cast<char>(bytes[i] ^ change);
            const auto image = Decode(bytes, "x.tga");
            if (!image) continue;
            const auto area = static_cast<std::size_t>(image.Value().width) *
                              static_cast<std::size_t>(image.Value().height);
            EXPECT_EQ(image.Value().rgba.size(), area * 4);
        }
    }
}

const CFormatCase kFormats[] = {
    {"Tga24", Tga24()},
    {"TgaRle32", TgaHeader(10, 2, 1, 32) + "\x01\0\0\xFF\xFF\xFF\0\0\x80"s, 0x80},
    {"TgaZeroAlpha", TgaHeader(2, 2, 1, 32) + "\0\0\xFF\0\xFF\0\0\0"s},
    {"Bmp", Bmp()},
    {"Gif", Gif()},
    {"Tiff", Tiff()},
    {"Pcx", Pcx()},
    {"Dxt1", Dxt1()},
    {"Dxt3", DdsPacked("DXT3", "\x8F\0\0\0\0\0\0\0"s + kFirstRedThenBlue), 0x88},
    {"Dxt5", DdsPacked("DXT5", "\xFF\x80\x08\0\0\0\0\0"s + kFirstRedThenBlue), 0x80},
    {"Dds565", DdsMasked(0x40, 16, {0xF800, 0x7E0, 0x1F, 0xFFFF}, "\x00\xF8\x1F\x00"s)},
    {"Dds24", Dds24()},
    {"Dds32", DdsRgba("\xFF\0\0\xFF\0\0\xFF\x80"s), 0x80},
    {"DdsTenBits",
     DdsMasked(0x41, 32, {0x3FF00000, 0xFFC00, 0x3FF, 0xC0000000}, "\0\0\xF0\xFF\xFF\x03\0\x40"s), 0x55},
    {"DdsZeroAlpha", DdsRgba("\xFF\0\0\0\0\0\xFF\0"s)},
};
INSTANTIATE_TEST_SUITE_P(Formats, ImageFormatTest, testing::ValuesIn(kFormats), kRowName);

TEST(ImageCodecTest, DdsGreyAndNarrowChannels) {
    EXPECT_EQ(Hex(Decode(DdsMasked(0x20001, 16, {0xFF, 0, 0, 0xFF00}, "\x70\xFF\x30\x01")).Value()),
              "707070ff 30303001");
    EXPECT_EQ(Hex(Decode(DdsMasked(0x41, 16, {0xF00, 0xF0, 0xF, 0xF000}, "\x34\x12\xF0\x8E")).Value()),
              "22334411 eeff0088");
    EXPECT_EQ(Hex(Decode(DdsMasked(0x41, 16, {0x7C00, 0x3E0, 0x1F, 0x8000}, "\xFF\x83\x10\x7C")).Value()),
              "00ffffff ff008400");
}

TEST(ImageCodecTest, DxtBlocksStandInRowsFromTheTopAndMayHaveHoles) {
    // Four blocks; their second lines differ. In the last the smaller colour comes first: index 3 is a hole.
    const std::string red = kRedBlue + "\0\x55\0\0"s, blue = kRedBlue + "\x55\0\x55\x55"s;
    const std::string hole = "\x1F\x00\x00\xF8"s + "\x03\0\0\0"s;
    const CResult<CImage> image = Decode(DdsPacked("DXT1", red + blue + blue + hole, 5, 5));
    ASSERT_TRUE(image) << image.Error().Text();
    const std::string r = "ff0000ff ", b = "0000ffff ", row = r + r + r + r + b;
    EXPECT_EQ(Hex(image.Value()) + " ", row + b + b + b + b + r + row + row + b + b + b + b + "00000000 ");
}

struct CRefusal {
    const char* name;
    std::string bytes;
    const char* file;
    EErrorCode code;
};
class ImageRefusalTest : public testing::TestWithParam<CRefusal> {};

TEST_P(ImageRefusalTest, SaysWhy) {
    const auto image = Decode(GetParam().bytes, GetParam().file);
    ASSERT_FALSE(image);
    EXPECT_EQ(image.Error().code, GetParam().code) << image.Error().message;
}

const CRefusal kRefusals[] = {
    {"Nothing", "", "a.jpg", EErrorCode::Unsupported},
    {"Text", "BMW is a car, not a picture", "a.bmp", EErrorCode::Unsupported},
    {"DdsNoSize", "DDS |" + std::string(124, '\0'), "a.dds", EErrorCode::BadFormat},
    {"DdsHeader", Dxt1().replace(4, 1, "\0"s), "a.dds", EErrorCode::BadFormat},
    {"DdsKind", DdsPacked("DX10", std::string(99, '\0')), "a.dds", EErrorCode::Unsupported},
    {"DdsPalette", DdsMasked(0x20, 8, {}, "12"), "", EErrorCode::Unsupported},
    {"DdsBits", DdsMasked(0x40, 0, {}, "12"), "", EErrorCode::Unsupported},
    {"DdsBig", Dxt1(16385), "", EErrorCode::TooLarge},
    {"DdsCutBlock", Dxt1(5), "", EErrorCode::BadFormat},
    {"DdsCutPixel", Dds24().substr(0, 133), "", EErrorCode::BadFormat},
    {"JpegHeadOnly", "\xFF\xD8\xFF\xE0\0\x10JFIF"s, "", EErrorCode::BadFormat},
    {"PngHeadOnly", "\x89PNG\r\n\x1a\n"s, "", EErrorCode::BadFormat},
    {"TgaCut", Tga24().substr(0, 20), "", EErrorCode::BadFormat},
    {"TgaNoSize", TgaHeader(2, 0, 9, 24), "a.tga", EErrorCode::BadFormat},
    {"TgaWide", TgaHeader(10, 16385, 1, 24) + "x", "", EErrorCode::TooLarge},
    {"TgaOfMoreRunsThanBytes", TgaHeader(10, 8193, 8193, 24) + "x", "", EErrorCode::BadFormat},
    {"BmpBig", Bmp(0x7FFFFFFF, 2), "", EErrorCode::TooLarge},
    {"BmpTopDownBig", Bmp(2, 0x80000000), "", EErrorCode::TooLarge},
    {"GifOfMorePixelsThanItsCodesCanSay", Gif(65535, 65535), "", EErrorCode::BadFormat},
    {"TiffBig", Tiff(65535), "", EErrorCode::TooLarge},
    {"PcxBig", Pcx(65535), "", EErrorCode::TooLarge},
    {"PngBig", "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x80\0\0\0\0\1\x08\2\0\0\0\x08\x54\x0D\x7F\0\0\0\0IDAT"s, "",
     EErrorCode::TooLarge}};
INSTANTIATE_TEST_SUITE_P(Refusals, ImageRefusalTest, testing::ValuesIn(kRefusals), kRowName);

TEST(ImageCodecTest, ErrorsOfFilesNameThem) {
    const CTestFolder folder;
    const std::string path = folder.Add("a.jpg", "no picture");
    EXPECT_EQ(image_codec::ReadImageFile(path).Error().where, path);
}

TEST(ImageCodecTest, ManyThreadsDecodeAtOnceAndNobodySaysAWord) {
    testing::internal::CaptureStderr();
    const std::vector<std::string> sound = {Tga24(), Bmp(), Gif(), Tiff(), Pcx(), Dxt1()};
    const std::vector<std::string> damaged = {Tga24().substr(0, 20), Bmp().substr(0, 50),
                                              Tiff().substr(0, 60)};
    std::atomic<int> decoded = 0;
    const auto decodeAll = [&] {
        for (int i = 0; i < 200; ++i) {
            for (const std::string& bytes : sound) decoded += Decode(bytes) ? 1 : 0;
            for (const std::string& bytes : damaged) decoded += Decode(bytes) ? 1 : 0;
        }
    };
    { const std::jthread a(decodeAll), b(decodeAll), c(decodeAll), d(decodeAll); }
    EXPECT_EQ(decoded, 4 * 200 * 6);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
