// SPDX-License-Identifier: MIT
#include "picture/cover_picture.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "row_name.h"

namespace {

using CPixel = std::array<int, 4>;
using CPaint = std::function<CPixel(int x, int y)>;

constexpr CPixel kRed{255, 0, 0, 255}, kGreen{0, 255, 0, 255}, kBlue{0, 0, 255, 255}, kClear{0, 0, 255, 0};

CImage Painted(int width, int height, const CPaint& paint) {
    CImage image{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            for (const int value : paint(x, y)) image.rgba.push_back(static_cast<std::uint8_t>(value));
    }
    return image;
}

struct CCoverCase {
    const char* name;
    int width, height;  ///< of the picture
    CPaint paint;
    int toWidth, toHeight;
    int x, y;  ///< where the result is looked at
    CPixel expected;
    int tolerance = 1;
};

CPixel ThirdsAcross(int x, int) {
    return x < 30 ? kRed : x < 60 ? kGreen : kBlue;
}
CPixel ThirdsDown(int x, int y) {
    return ThirdsAcross(y, x);
}
CPixel Checks(int x, int y) {
    return (x + y) % 2 == 0 ? CPixel{255, 255, 255, 255} : CPixel{0, 0, 0, 255};
}
CPixel RedBesideClear(int x, int) {
    return x % 2 == 0 ? kRed : kClear;
}

const CCoverCase kCases[] = {
    {"WideIsCutAtItsLeft", 90, 30, ThirdsAcross, 60, 60, 1, 30, kGreen},
    {"WideIsCutAtItsRight", 90, 30, ThirdsAcross, 60, 60, 58, 30, kGreen},
    {"TallIsCutAtItsTop", 30, 90, ThirdsDown, 10, 10, 5, 0, kGreen, 8},
    {"TallIsCutAtItsBottom", 30, 90, ThirdsDown, 10, 10, 5, 9, kGreen, 8},
    {"KeepsItsProportions", 90, 90, ThirdsAcross, 30, 30, 8, 29, kRed},
    {"FinestPatternTurnsGrey", 1000, 1000, Checks, 97, 131, 50, 60, {128, 128, 128, 255}, 3},
    {"GreyWhenHalvedAndMore", 1000, 1000, Checks, 430, 410, 17, 101, {128, 128, 128, 255}, 6},
    {"ClearPixelsDoNotColour", 400, 400, RedBesideClear, 40, 40, 20, 20, {255, 0, 0, 128}},
    {"NorWhenItGrows", 2, 1, RedBesideClear, 200, 100, 100, 50, {255, 0, 0, 127}, 2},
    {"OnePixel",
     1,
     1,
     [](int, int) {
         return CPixel{10, 20, 30, 40};
     },
     7,
     5,
     6,
     4,
     {10, 20, 30, 40}},
    {"LongAndThin", 4000, 1, ThirdsAcross, 20, 20, 10, 10, kBlue},
};

class CoverPictureTest : public testing::TestWithParam<CCoverCase> {};

TEST_P(CoverPictureTest, ShowsTheMiddleWellFiltered) {
    const CCoverCase& row = GetParam();
    const CImage covered =
        CoverWithPicture(Painted(row.width, row.height, row.paint), row.toWidth, row.toHeight);
    ASSERT_EQ(covered.width, row.toWidth);
    ASSERT_EQ(covered.height, row.toHeight);
    for (std::size_t c = 0; c < 4; ++c)
        EXPECT_NEAR(covered.Pixel(row.x, row.y)[c], row.expected[c], row.tolerance) << "channel " << c;
}

INSTANTIATE_TEST_SUITE_P(, CoverPictureTest, testing::ValuesIn(kCases), kRowName);

TEST(CoverPictureInItsOwnSizeTest, IsThePictureItself) {
    const CImage image = Painted(31, 17, [](int x, int y) { return CPixel{x * 8, y * 15, x ^ y, 255 - x}; });
    EXPECT_EQ(CoverWithPicture(image, 31, 17).rgba, image.rgba);
    EXPECT_TRUE(CoverWithPicture(image, 0, 17).IsEmpty());
    EXPECT_TRUE(CoverWithPicture({}, 3, 3).IsEmpty());
}

}  // namespace
