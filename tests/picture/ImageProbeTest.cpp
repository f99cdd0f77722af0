// SPDX-License-Identifier: MIT
#include "picture/image_probe.h"

#include <gtest/gtest.h>

#include "picture/decode/picture_bytes.h"
#include "row_name.h"

using namespace std::string_literals;

namespace {

struct CClaimCase {
    const char* name;
    std::string bytes;
    const char* file = "";
    EPictureFormat format = EPictureFormat::Unknown;
    std::uint64_t width = 0, height = 0;
};
class PictureClaimTest : public testing::TestWithParam<CClaimCase> {};

TEST_P(PictureClaimTest, IsWhatTheHeaderSays) {
    const auto claim = image_probe::ClaimOf(std::as_bytes(std::span(GetParam().bytes)), GetParam().file);
    ASSERT_EQ(claim.HasValue(), GetParam().width > 0);
    if (!claim) return;
    EXPECT_EQ(claim.Value().format, GetParam().format);
    EXPECT_EQ(claim.Value().width, GetParam().width);
    EXPECT_EQ(claim.Value().height, GetParam().height);
}

const std::string kFrame = "\xFF\xC2\0\x0B\x08\0\x05\0\x07\x01"s;

const CClaimCase kClaims[] = {
    {"Nothing", ""},
    {"Text", "BMW is a car, not a picture"},
    {"JpegBehindTables", "\xFF\xD8\xFF\xE0\0\4JF\xFF\xC4\0\3x"s + kFrame, "", EPictureFormat::Jpeg, 7, 5},
    {"JpegWithFillAndBytesBetween", "\xFF\xD8\xFF\xFF\xFF\xE0\0\2xx"s + kFrame, "", EPictureFormat::Jpeg, 7,
     5},
    {"JpegWithoutFrame", "\xFF\xD8\xFF\xC4\0\x99"s},
    {"Png", "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"s + Be32(7) + Be32(5), "", EPictureFormat::Png, 7, 5},
    {"BmpOfMostNegativeHeight", "BM" + std::string(12, 'x') + Le32(40) + Le32(7) + Le32(0x80000000), "",
     EPictureFormat::Bmp, 7, 0x80000000},
    {"BmpCore", "BM" + std::string(12, 'x') + Le32(12) + Le16(7) + Le16(5), "", EPictureFormat::Bmp, 7, 5},
    {"GifWithoutScreenIsItsFrame", "GIF89a" + Le32(0) + "\0\0\0!\xF9\1x\0,"s + Le32(0) + Le16(7) + Le16(5),
     "", EPictureFormat::Gif, 7, 5},
    {"TiffBigEndian", "MM\0*\0\0\0\x08\0\2\1\0\0\3\0\0\0\1\0\7xx\1\1\0\4\0\0\0\1\0\0\0\5"s, "",
     EPictureFormat::Tiff, 7, 5},
    {"TiffDirectoryBeyondItsEnd", "II*\0\xFF\xFF\xFF\xFF"s},
    {"SgiOfOneRow", "\x01\xDA\0\1\0\1\0\7\0\5"s, "", EPictureFormat::Sgi, 7, 1},
    {"Sgi", "\x01\xDA\0\1\0\3\0\7\0\5"s, "", EPictureFormat::Sgi, 7, 5},
    {"PcxRightOfItsLeft", "\x0A\5\1\x08\x09\0\0\0\1\0"s + std::string(130, 'x')},
    {"TgaByItsNameAlone", std::string(12, '\0') + Le16(7) + Le16(5), "a.TGA", EPictureFormat::Tga, 7, 5},
};
INSTANTIATE_TEST_SUITE_P(Claims, PictureClaimTest, testing::ValuesIn(kClaims), kRowName);

}  // namespace
