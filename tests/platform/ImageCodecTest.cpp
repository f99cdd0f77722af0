// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <thread>

#include "platform/CTestFolder.h"
#include "platform/file_util_ex.h"
#include "platform/image_codec.h"

using namespace std::string_literals;
using image_codec::DecodeImage;

namespace {

std::string Le16(unsigned value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
}
std::string Le32(unsigned value) {
    return Le16(value & 0xFFFF) + Le16(value >> 16);
}

CResult<CImage> Decode(std::string_view bytes, std::string_view name = "") {
    return DecodeImage(std::as_bytes(std::span(bytes)), name);
}

// Two pixels in a row, red and half-transparent or opaque blue, as each format stores them.
std::string TgaHeader(unsigned type, unsigned width, unsigned height, unsigned bits) {
    return "\0\0"s + static_cast<char>(type) + std::string(9, '\0') + Le16(width) + Le16(height) +
           static_cast<char>(bits) + '\x20';
}
std::string Tga24() {
    return TgaHeader(2, 2, 1, 24) + "\0\0\xFF\xFF\0\0"s;
}
std::string TgaRle32() {
    return TgaHeader(10, 2, 1, 32) + "\x01\0\0\xFF\xFF\xFF\0\0\x80"s;
}
std::string TgaZeroAlpha() {
    return TgaHeader(2, 2, 1, 32) + "\0\0\xFF\0\xFF\0\0\0"s;
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

struct CFormatCase {
    const char* name;
    std::function<std::string()> make;
    std::uint8_t secondAlpha = 255;
};
class ImageFormatTest : public testing::TestWithParam<CFormatCase> {};

}  // namespace

TEST_P(ImageFormatTest, GivesRedThenBlueByContentAlone) {
    const auto image = Decode(GetParam().make(), "misleading.png");
    ASSERT_TRUE(image) << image.Error().Text();
    ASSERT_EQ(image.Value().width, 2);
    ASSERT_EQ(image.Value().height, 1);
    const std::vector<std::uint8_t> expected = {255, 0, 0, 255, 0, 0, 255, GetParam().secondAlpha};
    EXPECT_EQ(image.Value().rgba, expected);
}

TEST_P(ImageFormatTest, EveryPrefixAndChangedByteHasAClearOutcome) {
    const std::string whole = GetParam().make();
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

INSTANTIATE_TEST_SUITE_P(Formats, ImageFormatTest,
                         testing::Values(CFormatCase{"Tga24", Tga24}, CFormatCase{"TgaRle32", TgaRle32, 0x80},
                                         CFormatCase{"TgaZeroAlpha", TgaZeroAlpha},
                                         CFormatCase{"Bmp", [] { return Bmp(); }},
                                         CFormatCase{"Gif", [] { return Gif(); }},
                                         CFormatCase{"Tiff", [] { return Tiff(); }},
                                         CFormatCase{"Pcx", [] { return Pcx(); }}),
                         [](const auto& test) { return test.param.name; });

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

INSTANTIATE_TEST_SUITE_P(
    Refusals, ImageRefusalTest,
    testing::Values(
        CRefusal{"Nothing", "", "a.jpg", EErrorCode::Unsupported},
        CRefusal{"Text", "BMW is a car, not a picture", "a.bmp", EErrorCode::Unsupported},
        CRefusal{"Dds", "DDS |" + std::string(124, '\0'), "a.dds", EErrorCode::Unsupported},
        CRefusal{"Sgi", "\x01\xDA\x01\x01"s, "a.rgb", EErrorCode::Unsupported},
        CRefusal{"JpegHeadOnly", "\xFF\xD8\xFF\xE0\0\x10JFIF"s, "", EErrorCode::BadFormat},
        CRefusal{"PngHeadOnly", "\x89PNG\r\n\x1a\n"s, "", EErrorCode::BadFormat},
        CRefusal{"TgaCut", Tga24().substr(0, 20), "", EErrorCode::BadFormat},
        CRefusal{"TgaNoSize", TgaHeader(2, 0, 9, 24), "a.tga", EErrorCode::BadFormat},
        CRefusal{"TgaWide", TgaHeader(10, 16385, 1, 24) + "x", "", EErrorCode::TooLarge},
        CRefusal{"TgaBig", TgaHeader(10, 8193, 8193, 24) + "x", "", EErrorCode::TooLarge},
        CRefusal{"BmpBig", Bmp(0x7FFFFFFF, 2), "", EErrorCode::TooLarge},
        CRefusal{"BmpTopDownBig", Bmp(2, 0x80000000), "", EErrorCode::TooLarge},
        CRefusal{"GifFrameBig", Gif(65535, 65535), "", EErrorCode::TooLarge},
        CRefusal{"TiffBig", Tiff(65535), "", EErrorCode::TooLarge},
        CRefusal{"PcxBig", Pcx(65535), "", EErrorCode::TooLarge},
        CRefusal{"PngBig",
                 "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x80\0\0\0\0\1\x08\2\0\0\0\x08\x54\x0D\x7F\0\0\0\0IDAT"s,
                 "", EErrorCode::TooLarge}),
    [](const auto& test) { return test.param.name; });

namespace {

// Smooth, with noise in the low bits, and transparency.
CImage TestImage(int width, int height) {
    CImage image{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int values[] = {x * 255 / width, y * 255 / height, (x + y) & 127, x ^ y};
            for (const int value : values) image.rgba.push_back(static_cast<std::uint8_t>(value));
        }
    }
    return image;
}

}  // namespace

TEST(ImageWriterTest, PngKeepsEveryPixel) {
    const CTestFolder folder;
    const CImage image = TestImage(301, 77);
    ASSERT_TRUE(image_codec::WritePng(folder / "a.png", image, true));
    EXPECT_EQ(image_codec::ReadImageFile(folder / "a.png").Value().rgba, image.rgba);
    ASSERT_TRUE(image_codec::WritePng(folder / "b.png", image, false));
    CImage opaque = image;
    for (std::size_t i = 3; i < opaque.rgba.size(); i += 4) opaque.rgba[i] = 255;
    EXPECT_EQ(image_codec::ReadImageFile(folder / "b.png").Value().rgba, opaque.rgba);
}

TEST(ImageWriterTest, JpegIsCloseAndACutOneIsStillShown) {
    const CTestFolder folder;
    CImage image = TestImage(320, 200);
    for (std::size_t i = 0; i < image.rgba.size(); ++i) {
        if (i % 4 >= 2) image.rgba[i] = i % 4 == 2 ? 90 : 255;
    }
    ASSERT_TRUE(image_codec::WriteJpeg(folder / "a.jpg", image, 95));
    const auto read = image_codec::ReadImageFile(folder / "a.jpg");
    ASSERT_TRUE(read);
    ASSERT_EQ(read.Value().rgba.size(), image.rgba.size());
    int worst = 0;
    for (std::size_t i = 0; i < image.rgba.size(); ++i) {
        worst = std::max(worst, std::abs(int{image.rgba[i]} - int{read.Value().rgba[i]}));
    }
    EXPECT_LE(worst, 8);
    const std::string bytes = CTestFolder::TextOf(folder / "a.jpg");
    const auto cut = Decode(std::string_view(bytes).substr(0, bytes.size() * 2 / 3));
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut.Value().rgba[1], read.Value().rgba[1]);
}

TEST(ImageWriterTest, RefusesPicturesThatAreNone) {
    const CTestFolder folder;
    CImage shortOne = TestImage(4, 4);
    shortOne.rgba.pop_back();
    for (const CImage& image : {CImage(), shortOne, CImage{-1, 4, {}}}) {
        EXPECT_EQ(image_codec::WritePng(folder / "a", image, true).Error().code, EErrorCode::BadArgument);
        EXPECT_EQ(image_codec::WriteJpeg(folder / "a", image).Error().code, EErrorCode::BadArgument);
    }
    EXPECT_EQ(image_codec::WritePng(folder / "none/a", TestImage(2, 2), true).Error().code,
              EErrorCode::WriteFailed);
    EXPECT_EQ(folder.Count(), 0U);
}

TEST(ImageCodecTest, ErrorsOfFilesNameThem) {
    const CTestFolder folder;
    const std::string path = folder.Add("a.jpg", "no picture");
    EXPECT_EQ(image_codec::ReadImageFile(path).Error().where, path);
    EXPECT_EQ(image_codec::ReadImageFile(folder / "none.jpg").Error().code, EErrorCode::NotFound);
}

TEST(ImageCodecTest, ManyThreadsDecodeAtOnceAndNobodySaysAWord) {
    testing::internal::CaptureStderr();
    const std::vector<std::string> sound = {Tga24(), Bmp(), Gif(), Tiff(), Pcx()};
    const std::vector<std::string> damaged = {Tga24().substr(0, 20), Bmp().substr(0, 50),
                                              Tiff().substr(0, 60)};
    std::vector<std::thread> threads;
    std::atomic<int> decoded = 0;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i) {
                for (const std::string& bytes : sound) decoded += Decode(bytes) ? 1 : 0;
                for (const std::string& bytes : damaged) decoded += Decode(bytes) ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(decoded, 4 * 200 * 5);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
