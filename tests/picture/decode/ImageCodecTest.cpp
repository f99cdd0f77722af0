// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>

#include "error_code_of.h"
#include "picture/decode/picture_bytes.h"
#include "row_name.h"

using namespace std::string_literals;

namespace {

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

struct CDdsCase {
    const char* name;
    std::string bytes;
    const char* pixels;
};
class DdsTest : public testing::TestWithParam<CDdsCase> {};

TEST_P(DdsTest, GivesItsPixelsByContentAlone) {
    const auto image = Decode(GetParam().bytes, "misleading.png");
    ASSERT_TRUE(image) << image.Error().Text();
    EXPECT_TRUE(image.Value().width == 2 && image.Value().height == 1);
    EXPECT_EQ(Hex(image.Value()), GetParam().pixels);
}

const CDdsCase kDds[] = {
    {"Dxt1", Dxt1(), "ff0000ff 0000ffff"},
    {"Dxt3", DdsPacked("DXT3", "\x8F\0\0\0\0\0\0\0"s + kFirstRedThenBlue), "ff0000ff 0000ff88"},
    {"Dxt5", DdsPacked("DXT5", "\xFF\x80\x08\0\0\0\0\0"s + kFirstRedThenBlue), "ff0000ff 0000ff80"},
    {"565", DdsMasked(0x40, 16, {0xF800, 0x7E0, 0x1F, 0xFFFF}, "\x00\xF8\x1F\x00"s), "ff0000ff 0000ffff"},
    {"24", Dds24(), "ff0000ff 0000ffff"},
    {"32", DdsRgba("\xFF\0\0\xFF\0\0\xFF\x80"s), "ff0000ff 0000ff80"},
    {"TenBits", DdsMasked(0x41, 32, {0x3FF00000, 0xFFC00, 0x3FF, 0xC0000000}, "\0\0\xF0\xFF\xFF\x03\0\x40"s),
     "ff0000ff 0000ff55"},
    {"ZeroAlpha", DdsRgba("\xFF\0\0\0\0\0\xFF\0"s), "ff0000ff 0000ffff"},
    {"Grey", DdsMasked(0x20001, 16, {0xFF, 0, 0, 0xFF00}, "\x70\xFF\x30\x01"), "707070ff 30303001"},
    {"FourBits", DdsMasked(0x41, 16, {0xF00, 0xF0, 0xF, 0xF000}, "\x34\x12\xF0\x8E"), "22334411 eeff0088"},
    {"OneBitOfAlpha", DdsMasked(0x41, 16, {0x7C00, 0x3E0, 0x1F, 0x8000}, "\xFF\x83\x10\x7C"),
     "00ffffff ff008400"},
};
INSTANTIATE_TEST_SUITE_P(Kinds, DdsTest, testing::ValuesIn(kDds), kRowName);

class DamagedPictureTest : public testing::TestWithParam<const char*> {};

TEST_P(DamagedPictureTest, EveryPrefixAndChangedByteHasAClearOutcome) {
    const std::string whole = Seed(GetParam());
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (const int change : {0, 0x01, 0x80, 0xFF}) {
            std::string bytes = change == 0 ? whole.substr(0, i) : whole;
            if (change != 0) bytes[i] = static_cast<char>(bytes[i] ^ change);
            const auto image = Decode(bytes, "x.tga");
            if (!image) continue;
            const auto area = static_cast<std::size_t>(image.Value().width) *
                              static_cast<std::size_t>(image.Value().height);
            EXPECT_EQ(image.Value().rgba.size(), area * 4);
        }
    }
}
INSTANTIATE_TEST_SUITE_P(Seeds, DamagedPictureTest,
                         testing::Values("tga24.tga", "tga32_packed.tga", "bmp_rle4.bmp", "bmp_core.bmp",
                                         "gif.gif", "tiff_lzw.tif", "pcx_planes.pcx", "pcx1.pcx", "dxt1.dds",
                                         "dxt3.dds", "dxt5.dds", "dds24.dds", "dds_grey.dds"),
                         [](const auto& row) {
                             std::string name = row.param;
                             return name.replace(name.find('.'), 1, "_");
                         });

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
    EErrorCode code;
    const char* file = "";
};
class ImageRefusalTest : public testing::TestWithParam<CRefusal> {};

TEST_P(ImageRefusalTest, SaysWhyBeforeMemoryIsTaken) {
    EXPECT_EQ(CodeOf(Decode(GetParam().bytes, GetParam().file)), GetParam().code);
}

std::string TiffEntry(unsigned tag, unsigned type, unsigned count, unsigned value) {
    return Le16(tag) + Le16(type) + Le32(count) + Le32(value);
}
std::string TiffShort(unsigned tag, unsigned value) {
    return TiffEntry(tag, 3, 1, value);
}
/** A number, or where count of them stand. */
std::string TiffLong(unsigned tag, unsigned value, unsigned count = 1) {
    return TiffEntry(tag, 4, count, value);
}
/** A TIFF of one row whose directory has entry in the place of the one for the samples of a pixel. */
std::string Tiff(std::string_view entry) {
    return "II*\0"s + Le32(8) + Le16(9) + TiffShort(256, 4) + TiffShort(257, 1) + TiffShort(258, 8) +
           TiffShort(259, 1) + TiffShort(262, 1) + TiffLong(273, 0) + std::string(entry) + TiffShort(278, 1) +
           TiffLong(279, 4) + Le32(0);
}
std::string TiffOfManyValues() {
    std::string bytes = "II*\0"s + Le32(8) + Le16(102);
    for (const unsigned tag : {256U, 257U}) bytes += TiffShort(tag, 1);
    for (unsigned i = 0; i < 100; ++i) bytes += TiffEntry(40000 + i, 1, 1200, 8);
    return bytes + Le32(0);
}
/** Rows of eight pixels, a strip each, and all of them the same bytes. */
std::string TiffOfSharedStrips(unsigned rows) {
    const unsigned offsets = 8 + 2 + 9 * 12 + 4, counts = offsets + 4 * rows, data = counts + 4 * rows;
    std::string bytes = "II*\0"s + Le32(8) + Le16(9) + TiffShort(256, 8) + TiffShort(257, rows) +
                        TiffShort(258, 8) + TiffShort(259, 1) + TiffShort(262, 1) +
                        TiffLong(273, offsets, rows) + TiffShort(277, 1) + TiffShort(278, 1) +
                        TiffLong(279, counts, rows) + Le32(0);
    for (unsigned i = 0; i < rows; ++i) bytes += Le32(data);
    for (unsigned i = 0; i < rows; ++i) bytes += Le32(1000);
    return bytes + std::string(1000, 'x');
}
std::string JpegOfManyScans() {
    std::string bytes = Seed("jpeg_progressive.jpg");
    for (int i = 0; i < 101; ++i) bytes += "\xFF\xDA";
    return bytes;
}

const std::string kTiff = Seed("tiff.tif"), kProgressive = Seed("jpeg_progressive.jpg");
using enum EErrorCode;
const CRefusal kRefusals[] = {
    {"Nothing", "", Unsupported, "a.jpg"},
    {"Text", "BMW is a car, not a picture", Unsupported, "a.bmp"},
    {"DdsNoSize", "DDS |" + std::string(124, '\0'), BadFormat},
    {"DdsHeader", With(Dxt1(), 4, "\0"s), BadFormat},
    {"DdsKind", DdsPacked("DX10", std::string(99, '\0')), Unsupported},
    {"DdsPalette", DdsMasked(0x20, 8, {}, "12"), Unsupported},
    {"DdsBits", DdsMasked(0x40, 0, {}, "12"), Unsupported},
    {"DdsBig", Dxt1(16385), TooLarge},
    {"DdsCutBlock", Dxt1(5), BadFormat},
    {"DdsCutPixel", Dds24().substr(0, 133), BadFormat},
    {"DdsBlocks", With(Seed("dxt1.dds"), 12, Le32(16384) + Le32(16384)), BadFormat},
    {"JpegHeadOnly", "\xFF\xD8\xFF\xE0\0\x10JFIF"s, BadFormat},
    {"JpegScans", JpegOfManyScans(), TooLarge},
    {"JpegCoefficients", With(kProgressive, kProgressive.find("\xFF\xC2") + 5, Be16(16384) + Be16(16384)),
     TooLarge},
    {"PngHeadOnly", "\x89PNG\r\n\x1a\n"s, BadFormat},
    {"PngBig", "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x80\0\0\0\0\1\x08\2\0\0\0\x08\x54\x0D\x7F\0\0\0\0IDAT"s,
     TooLarge},
    {"TgaCut", Seed("tga24.tga").substr(0, 20), BadFormat, "a.tga"},
    {"TgaNoSize", With(Seed("tga24.tga"), 12, Le16(0)), BadFormat, "a.tga"},
    {"TgaWide", With(Seed("tga32_packed.tga"), 12, Le16(16385)), TooLarge},
    {"TgaOfMoreRunsThanBytes", With(Seed("tga32_packed.tga"), 12, Le16(8193) + Le16(8193)), BadFormat},
    {"BmpBig", With(Seed("bmp24.bmp"), 18, Le32(0x7FFFFFFF)), TooLarge},
    {"BmpTopDownBig", With(Seed("bmp24.bmp"), 22, Le32(0x80000000)), TooLarge},
    {"BmpRunsThatJump", With(Seed("bmp_jumps.bmp"), 18, Le32(9000) + Le32(7000)), BadFormat},
    {"BmpOfPlainPixels", With(Seed("bmp24.bmp"), 18, Le32(16384) + Le32(16384)), BadFormat},
    {"PcxBig", With(Seed("pcx8.pcx"), 8, Le16(65535)), TooLarge},
    {"PcxRunsOfNothing",
     With(Seed("pcx8.pcx"), 8, Le16(16000) + Le16(16000) + std::string(53, '\0') + "\1"s + Le16(16002)),
     BadFormat},
    {"SgiRowsThatShareBytes", With(Seed("sgi_packed_grey.sgi"), 6, Be16(16384)), BadFormat},
    {"SgiTablesBeyondItsEnd", With(Seed("sgi_packed_grey.sgi"), 8, Be16(9999)), BadFormat},
    {"GifScreen", With(Seed("gif.gif"), 6, Le16(16384) + Le16(16384)), BadFormat},
    {"GifOfNoWidth", With(Seed("gif.gif"), 6, Le16(0)).replace(Seed("gif.gif").find(',') + 5, 2, Le16(0)),
     BadFormat},
    {"GifOfNoHeight", With(Seed("gif.gif"), 8, Le16(0)).replace(Seed("gif.gif").find(',') + 7, 2, Le16(0)),
     BadFormat},
    {"GifFrame", With(Seed("gif.gif"), Seed("gif.gif").find(',') + 5, Le32(0xFFFFFFFF)), BadFormat},
    {"TiffBig", With(kTiff, kTiff.find(Le16(256) + Le16(3)) + 8, Le32(65535)), TooLarge},
    {"TiffSamples", Tiff(TiffShort(277, 6)), Unsupported},
    {"BigTiff", With(kTiff, 0, "II+\0"s), Unsupported},
    {"TiffValueOutside", Tiff(TiffEntry(40000, 2, 5, 0xFFFFFFF0)), BadFormat},
    {"TiffValuesThatShareBytes", TiffOfManyValues(), BadFormat},
    {"TiffStripsThatShareBytes", TiffOfSharedStrips(300), BadFormat},
};
INSTANTIATE_TEST_SUITE_P(Refusals, ImageRefusalTest, testing::ValuesIn(kRefusals), kRowName);

TEST(ImageCodecTest, StripsOfATiffMaySayThatTheyAreLongerThanTheyAre) {
    const CResult<CImage> image = Decode(TiffOfSharedStrips(10));
    ASSERT_TRUE(image) << image.Error().Text();
    std::string pixels;
    for (int i = 0; i < 8 * 10; ++i) pixels += "787878ff ";  // an 'x' each
    EXPECT_EQ(Hex(image.Value()) + " ", pixels);
}

TEST(ImageCodecTest, RunsBesideABitmapAreNotSeen) {
    // Its first line from below, with runs that reach past its end and begin behind it, then the second.
    const std::string runs = "\2\1\6\2\xFF\1\0\0\4\2\0\1"s;
    const std::string head = "BM" + Le32(0) + Le32(0) + Le32(66) + Le32(40) + Le32(4) + Le32(2) + Le16(1) +
                             Le16(8) + Le32(1) + Le32(0) + Le32(0) + Le32(0) + Le32(3) + Le32(0);
    const std::string colours = Le32(0) + Le32(0xFF0000) + Le32(0xFF);
    const CResult<CImage> image = Decode(head + colours + runs);
    ASSERT_TRUE(image) << image.Error().Text();
    const std::string blue = "0000ffff", red = "ff0000ff";
    EXPECT_EQ(Hex(image.Value()),
              blue + " " + blue + " " + blue + " " + blue + " " + red + " " + red + " " + blue + " " + blue);
}

TEST(ImageCodecTest, ErrorsOfFilesNameThem) {
    const CTestFolder folder;
    const std::string path = folder.Add("a.jpg", "no picture");
    EXPECT_EQ(image_codec::ReadImageFile(path).Error().where, path);
}

TEST(ImageCodecTest, ManyThreadsDecodeAtOnceAndNobodySaysAWord) {
    testing::internal::CaptureStderr();
    std::vector<std::string> sound, damaged;
    for (const char* name :
         {"tga32_packed.tga", "bmp24.bmp", "gif.gif", "tiff.tif", "pcx8.pcx", "jpeg.jpg"}) {
        sound.push_back(Seed(name));
        damaged.push_back(sound.back().substr(0, 20));
    }
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
