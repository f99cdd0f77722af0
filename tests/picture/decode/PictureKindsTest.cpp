// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <sstream>

#include "picture/decode/picture_bytes.h"
#include "row_name.h"

using namespace std::string_literals;

namespace {

// Pictures are 2 x 2 unless a row says otherwise. Bytes that no decoder may look at are 'x'.

/** Palette: red, green, blue; what lies beyond it is black. */
const std::string kColours = "\0\0\xFF\0\0\xFF\0\0\xFF\0\0\0"s;

std::string Bmp(unsigned bits, unsigned compression, std::string_view behind, std::string_view data,
                unsigned colours = 3, unsigned width = 2, unsigned height = 2) {
    return "BMxxxxxxxx" + Le32(54 + static_cast<unsigned>(behind.size())) + Le32(40) + Le32(width) +
           Le32(height) + Le16(1) + Le16(bits) + Le32(compression) + "xxxxxxxxxxxx" + Le32(colours) + "xxxx" +
           std::string(behind) + std::string(data);
}

struct CTgaParts {
    unsigned type = 2, bits = 24, descriptor = 0;
    std::string map = std::string(5, '\0');
    bool hasMap = false;
    std::string id = {};
};
std::string Tga(const CTgaParts& parts, std::string_view data) {
    return std::string{static_cast<char>(parts.id.size()), parts.hasMap ? '\1' : '\0',
                       static_cast<char>(parts.type)} +
           parts.map + Le16(77) + Le16(99) + Le16(2) + Le16(2) + static_cast<char>(parts.bits) +
           static_cast<char>(parts.descriptor) + parts.id + std::string(data);
}

std::string Pcx(unsigned bits, unsigned planes, std::string_view data, std::string_view colours = "",
                unsigned version = 5) {
    std::string header = "\x0A"s + static_cast<char>(version) + "\1"s + static_cast<char>(bits) + Le16(3) +
                         Le16(4) + Le16(4) + Le16(5) + "xxxx" + std::string(colours);
    header.resize(64, '\0');
    header += "x"s + static_cast<char>(planes) + Le16(2);
    header.resize(128, 'x');
    return header + std::string(data);
}

std::string Sgi(unsigned storage, unsigned sampleBytes, unsigned dimension, unsigned planes,
                std::string_view data) {
    std::string header = "\x01\xDA"s + static_cast<char>(storage) + static_cast<char>(sampleBytes) +
                         Be16(dimension) + Be16(2) + Be16(2) + Be16(planes) + "xxxxxxxx";
    header.resize(512, '\0');
    return header + std::string(data);
}

/** Codes of three bits; each is preceded by a clear code, so that none has more. */
std::string GifCodes(std::string_view indices) {
    std::string bits;
    for (const char index : indices) (bits += "001") += index == '0' ? "000" : index == '1' ? "100" : "010";
    bits += "101";
    std::string bytes;
    for (std::size_t i = 0; i < bits.size(); i += 8) {
        unsigned value = 0;
        for (std::size_t k = 0; k < 8 && i + k < bits.size(); ++k) value |= bits[i + k] == '1' ? 1U << k : 0;
        bytes += static_cast<char>(value);
    }
    return "\2"s + static_cast<char>(bytes.size()) + bytes + '\0';
}
std::string Gif(unsigned width, unsigned height, std::string_view behind) {
    return "GIF89a" + Le16(width) + Le16(height) + "\x81\0\0"s + "\xFF\0\0\0\xFF\0\0\0\xFF\0\0\0"s +
           std::string(behind) + ";";
}
std::string GifFrame(unsigned left, unsigned top, unsigned width, unsigned height, char flags,
                     std::string_view rest) {
    return "," + Le16(left) + Le16(top) + Le16(width) + Le16(height) + flags + std::string(rest);
}

struct CKind {
    const char* name;
    std::string bytes;
    const char* pixels;
};
class PictureKindsTest : public testing::TestWithParam<CKind> {};

TEST_P(PictureKindsTest, GivesItsPixels) {
    const CResult<CImage> image = Decode(GetParam().bytes, GetParam().name);
    ASSERT_TRUE(image) << image.Error().Text();
    EXPECT_EQ(Hex(image.Value()), GetParam().pixels);
}

// clang-format off
const char* const kFour = "ff0000ff 00ff00ff 0000ffff 000000ff";

const CKind kBmp[] = {
    {"FromBelow", Bmp(24, 0, "", "\xFF\0\0\0\0\0xx\0\0\xFF\0\xFF\0"s), kFour},
    {"FromAbove", Bmp(24, 0, "", "\0\0\xFF\0\xFF\0xx\xFF\0\0\0\0\0"s, 0, 2, 0xFFFFFFFE), kFour},
    {"IndicesBeyondThePalette", Bmp(8, 0, kColours, "\2\xFFxx\0\1"s), kFour},
    {"FourBits", Bmp(4, 0, kColours, "\x2Fxxx\x01"s), kFour},
    {"TwoBits", Bmp(2, 0, kColours, "\xB0xxx\x10"s), kFour},
    {"OneBit", Bmp(1, 0, kColours, "\x80xxx\x40"s), "ff0000ff 00ff00ff 00ff00ff ff0000ff"},
    {"Masks565", Bmp(16, 3, Le32(0xF800) + Le32(0x7E0) + Le32(0x1F), "\x1F\0\0\0\0\xF8\xE0\x07"s), kFour},
    {"FiveBitsEach", Bmp(16, 0, "", "\x1F\0\0\x80\0\x7C\xE0\x03"s), kFour},
    {"AlphaMaskBehindTheHeader", Bmp(16, 6, Le32(0xF00) + Le32(0xF0) + Le32(0xF) + Le32(0xF000), "\x0F\xF0\0\0\0\xFF\xF0\x70"s),
     "ff0000ff 00ff0077 0000ffff 00000000"},
    {"FourthByteIsAlpha", Bmp(32, 0, "", "\xFF\0\0\x80\0\0\0\xFF\0\0\xFF\xFF\0\xFF\0\0"s), "ff0000ff 00ff0000 0000ff80 000000ff"},
    {"FourthByteZeroEverywhere", Bmp(32, 0, "", "\xFF\0\0\0\0\0\0\0\0\0\xFF\0\0\xFF\0\0"s), kFour},
    {"OffsetIntoTheHeader", Bmp(8, 0, kColours, "\2\xFFxx\0\1"s).replace(10, 4, Le32(14)), kFour},
    {"Os2", "BMxxxxxxxx" + Le32(32) + Le32(12) + Le16(2) + Le16(2) + Le16(1) + Le16(1) + "\0\0\xFF\0\xFF\0\x80xxx\x40"s,
     "ff0000ff 00ff00ff 00ff00ff ff0000ff"},
    {"Runs", Bmp(8, 1, kColours, "\1\2\1\xFF\0\0\1\0\1\1\0\1"s), kFour},
    {"RunsPastTheLine", Bmp(8, 1, kColours, "\1\2\7\xFF\0\0\1\0\x09\1\0\1"s), kFour},
    {"RunsOfLiterals", Bmp(8, 1, kColours, "\0\3\2\xFF\1x\0\0\0\3\0\1\2x\0\1"s), kFour},
    {"RunsThatJump", Bmp(8, 1, kColours, "\0\2\1\1\1\1\0\1"s), "ff0000ff 00ff00ff ff0000ff ff0000ff"},
    {"RunsThatJumpFarOutside", Bmp(8, 1, kColours, "\1\2\1\xFF\0\0\1\0\1\1\0\2\xFF\xFF\7\1\0\1"s), kFour},
    {"RunsOfFourBits", Bmp(4, 2, kColours, "\2\x2F\0\0\0\3\x01\x10\0\1"s), kFour},
};
INSTANTIATE_TEST_SUITE_P(Bmp, PictureKindsTest, testing::ValuesIn(kBmp), kRowName);

const std::string kRed24 = "\0\0\xFF"s, kGreen24 = "\0\xFF\0"s, kBlue24 = "\xFF\0\0"s, kBlack24 = "\0\0\0"s;
const CKind kTga[] = {
    {"FromBelow.tga", Tga({}, kBlue24 + kBlack24 + kRed24 + kGreen24), kFour},
    {"FromAbove.tga", Tga({.descriptor = 0x20}, kRed24 + kGreen24 + kBlue24 + kBlack24), kFour},
    {"FromTheRight.tga", Tga({.descriptor = 0x30}, kGreen24 + kRed24 + kBlack24 + kBlue24), kFour},
    {"RunsAcrossLines.tga", Tga({.type = 10, .descriptor = 0x20}, "\0"s + kRed24 + "\x81" + kGreen24 + "\0"s + kBlue24),
     "ff0000ff 00ff00ff 00ff00ff 0000ffff"},
    {"PaletteFromItsFirstNumber.tga", Tga({.type = 1, .bits = 8, .map = Le16(5) + Le16(3) + "\x18", .hasMap = true, .id = "id"},
                                          kRed24 + kGreen24 + kBlue24 + "\7\xFF\5\6"s), kFour},
    {"PaletteOfTrueColours.tga", Tga({.map = Le16(0) + Le16(2) + "\x18", .hasMap = true},
                                     "xxxxxx" + kBlue24 + kBlack24 + kRed24 + kGreen24), kFour},
    {"Grey.tga", Tga({.type = 11, .bits = 8}, "\x81\x40\1\x50\x60"s), "505050ff 606060ff 404040ff 404040ff"},
    {"GreyWithAlpha.tga", Tga({.type = 3, .bits = 16}, "\1\xFF\2\xFF\3\xFF\4\x80"s), "030303ff 04040480 010101ff 020202ff"},
    {"OneBitOfAlpha.tga", Tga({.bits = 16, .descriptor = 1}, "\x1F\x80\0\0\0\xFC\xE0\x83"s), "ff0000ff 00ff00ff 0000ffff 00000000"},
    {"OneBitOfNothing.tga", Tga({.bits = 16}, "\x1F\x80\0\0\0\x7C\xE0\x03"s), kFour},
    {"AlphaThatTheHeaderDenies.tga", Tga({.bits = 32}, kBlue24 + "\xFF" + kBlack24 + "\x10" + kRed24 + "\xFF" + kGreen24 + "\xFF"),
     "ff0000ff 00ff00ff 0000ffff 00000010"},
};
// The names' endings tell the format where nothing else does.
INSTANTIATE_TEST_SUITE_P(Tga, PictureKindsTest, testing::ValuesIn(kTga), [](const auto& row) {
    return std::string(row.param.name, std::string_view(row.param.name).find('.'));
});

const std::string kRgbColours = "\xFF\0\0\0\xFF\0\0\0\xFF"s;
const CKind kPcx[] = {
    {"PaletteAtTheEnd", Pcx(8, 1, "\0\1\2\xC1\xFF"s + "\x0C" + kRgbColours + std::string(759, '\0')), kFour},
    {"GreyWithoutPalette", Pcx(8, 1, "\1\2\3\4"), "010101ff 020202ff 030303ff 040404ff"},
    {"RunsAcrossPlanesAndLines", Pcx(8, 3, "\xC1\xFF\xC2\0\xC1\xFF\xC6\0\xC1\xFF\xC5\0"s), kFour},
    {"FourPlanesHaveAlpha", Pcx(8, 4, "\1\2\3\4\5\6\7\x08\1\2\3\4\5\6\7\x09"), "01030507 02040608 01030507 02040609"},
    {"PlanesOfOneBit", Pcx(1, 2, "\x40x\0x\x40x\xC1\xC0x"s, kRgbColours), "ff0000ff 00ff00ff 0000ffff 000000ff"},
    {"VersionWithoutColours", Pcx(1, 4, "\x40x\0x\xC1\xC0x\xC1\xC0x\xC1\xC0x\0x\x40x\0x"s, kRgbColours, 3),
     "ff5555ff ff55ffff 0000aaff aa00aaff"},
    {"BlackAndWhite", Pcx(1, 1, "\x40x\x80x"), "000000ff ffffffff ffffffff 000000ff"},
    {"FourBits", Pcx(4, 1, "\x01x\x2Fx"s, kRgbColours), kFour},
};
INSTANTIATE_TEST_SUITE_P(Pcx, PictureKindsTest, testing::ValuesIn(kPcx), kRowName);

std::string SgiTables(std::initializer_list<unsigned> starts, unsigned length) {
    std::string tables;
    for (const unsigned start : starts) tables += Be32(start);
    for (std::size_t i = 0; i < starts.size(); ++i) tables += Be32(length);
    return tables;
}
const CKind kSgi[] = {
    {"PlanesFromBelow", Sgi(0, 1, 3, 3, "\0\0\xFF\0\0\0\0\xFF\xFF\0\0\0"s), kFour},
    {"TwoBytesASample", Sgi(0, 2, 2, 7, "\1x\2x\3x\4x"), "030303ff 040404ff 010101ff 020202ff"},
    {"TwoPlanesAreGreyAndAlpha", Sgi(0, 1, 3, 2, "\1\2\3\4\x11\x12\x13\x14"), "03030313 04040414 01010111 02020212"},
    {"FivePlanes", Sgi(0, 1, 3, 5, "\1\1\1\1\2\2\2\2\3\3\3\3\x80\x80\x80\x80xxxx"), "01020380 01020380 01020380 01020380"},
    {"OneRow", Sgi(0, 1, 1, 9, "\1\2"), "010101ff 020202ff"},
    {"Runs", Sgi(1, 1, 2, 1, SgiTables({528, 531}, 3) + "\2\7\0\x82\x08\x09"s), "080808ff 090909ff 070707ff 070707ff"},
    {"RunsOfTwoBytes", Sgi(1, 2, 2, 1, SgiTables({528, 528}, 6) + "x\2\7xx\0"s), "070707ff 070707ff 070707ff 070707ff"},
    {"RowThatEndsEarly", Sgi(1, 1, 2, 1, SgiTables({528, 528}, 3) + "\1\7\0"s), "070707ff 000000ff 070707ff 000000ff"},
    {"RunLongerThanTheRow", Sgi(1, 1, 2, 1, SgiTables({528, 528}, 2) + "\x7F\7"s), "070707ff 070707ff 070707ff 070707ff"},
};
INSTANTIATE_TEST_SUITE_P(Sgi, PictureKindsTest, testing::ValuesIn(kSgi), kRowName);

const CKind kGif[] = {
    {"WholeScreen", Gif(2, 2, GifFrame(0, 0, 2, 2, 0, GifCodes("0123"))), "ff0000ff 00ff00ff 0000ffff 0000ffff"},
    {"FrameOnItsScreen", Gif(2, 2, GifFrame(1, 1, 4, 4, 0, GifCodes("1000000000000000"))), "00000000 00000000 00000000 00ff00ff"},
    {"NoScreen", Gif(0, 0, GifFrame(0, 0, 1, 2, 0, GifCodes("12"))), "00ff00ff 0000ffff"},
    {"TransparentIndex", Gif(1, 2, "!\xF9\4\1\0\0\1\0"s + GifFrame(0, 0, 1, 2, 0, GifCodes("10"))), "00ff0000 ff0000ff"},
    {"TransparentIndexWithoutItsFlag", Gif(1, 2, "!\xF9\4\0\0\0\1\0"s + GifFrame(0, 0, 1, 2, 0, GifCodes("10"))), "00ff00ff ff0000ff"},
    {"PaletteOfTheFrame", Gif(1, 2, "!\xFE\3abc\0"s + GifFrame(0, 0, 1, 2, '\x80', "\1\1\1\2\2\2" + GifCodes("01"))),
     "010101ff 020202ff"},
    {"Interlaced", Gif(1, 10, GifFrame(0, 0, 1, 10, 0x40, GifCodes("0120012012"))),
     "ff0000ff 00ff00ff ff0000ff 0000ffff 0000ffff ff0000ff ff0000ff 00ff00ff 00ff00ff 0000ffff"},
    {"FrameThatEndsEarly", Gif(1, 3, GifFrame(0, 0, 1, 3, 0, GifCodes("12"))), "00ff00ff 0000ffff ff0000ff"},
    {"SecondFrameIsNotLookedAt", Gif(1, 1, GifFrame(0, 0, 1, 1, 0, GifCodes("1")) + GifFrame(0, 0, 1, 1, 0, "xxx")), "00ff00ff"},
};
INSTANTIATE_TEST_SUITE_P(Gif, PictureKindsTest, testing::ValuesIn(kGif), kRowName);
// clang-format on

// Three by three of which the edges have one alpha, the middle has another.
std::string AlphaOf(char edge, char middle) {
    std::string data;
    for (int i = 0; i < 9; ++i) data += "\1\2\3"s + (i == 4 ? middle : edge);
    const CResult<CImage> image = Decode(Bmp(32, 0, "", data, 0, 3, 3), "");
    return image ? Hex(image.Value()).substr(0, 8) : image.Error().Text();
}

TEST(PictureKindsTest, AlphaOfEdgesAloneIsNoneButHolesAre) {
    EXPECT_EQ(AlphaOf('\xF0', '\xFF'), "030201ff");
    EXPECT_EQ(AlphaOf('\x10', '\xFF'), "03020110");
    EXPECT_EQ(AlphaOf('\xF0', '\xF0'), "030201f0");
}

// The fuzzers' seeds: one picture, written by another program in many kinds.
TEST(PictureKindsTest, KindsOfOnePictureAreAlike) {
    const auto pixelsOf = [](const std::string& name) {
        const auto decoded = Decode(Seed(name), name);
        return decoded ? Hex(decoded.Value()) : decoded.Error().Text();
    };
    for (const std::string names :
         {"png24.png bmp24.bmp bmp4.bmp bmp8.bmp bmp_rle8.bmp dds24.dds gif.gif gif_interlaced.gif pcx24.pcx "
          "pcx8.pcx png32_interlaced.png png48.png png_palette.png sgi16.sgi sgi24.sgi tga24.tga tga_map.tga "
          "tiff.tif tiff16.tif tiff_big_endian.tif tiff_bits.tif tiff_lzw.tif tiff_palette.tif "
          "tiff_planes.tif tiff_tiles.tif tiff_zip.tif",
          "png1.png bmp1.bmp pcx1.pcx tiff_fax.tif tiff_fax3.tif",
          "bmp32.bmp tga32_packed.tga tiff_alpha.tif", "png_grey.png tga8.tga",
          "jpeg_444.jpg jpeg_progressive.jpg", "sgi_packed_alpha.sgi sgi_packed_rgba.sgi"}) {
        std::istringstream rest(names);
        std::string name, pixels;
        while (rest >> name) {
            if (pixels.empty()) pixels = pixelsOf(name);
            EXPECT_GT(pixels.size(), 300U) << pixels;
            EXPECT_EQ(pixelsOf(name), pixels) << name;
        }
    }
}

}  // namespace
