// SPDX-License-Identifier: MIT
#include "widgets/window_place.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "row_name.h"

namespace {

constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();
constexpr CPlaceRect kMain{0, 30, 1920, 1050};
constexpr CPlaceRect kRight{1920, 0, 1280, 1024};

struct CRow {
    const char* name;
    CPlaceRect stored;
    std::vector<CPlaceRect> screens;
    CPlaceRect expected;
};

class WindowPlaceTest : public testing::TestWithParam<CRow> {};

TEST_P(WindowPlaceTest, Fits) {
    const CPlaceRect place = window_place::BringOntoScreen(GetParam().stored, GetParam().screens);
    EXPECT_EQ(place, GetParam().expected)
        << place.x << " " << place.y << " " << place.width << " " << place.height;
}

const CRow kRows[] = {
    {"StaysWhereItIs", {100, 100, 800, 600}, {kMain, kRight}, {100, 100, 800, 600}},
    {"StaysOnTheSecond", {2000, 100, 800, 600}, {kMain, kRight}, {2000, 100, 800, 600}},
    {"StaysAcrossTwo", {1600, 100, 800, 600}, {kMain, kRight}, {1600, 100, 800, 600}},
    {"StaysPartlyOff", {-600, 100, 800, 600}, {kMain}, {-600, 100, 800, 600}},
    {"StaysWithItsFootOff", {100, 900, 800, 600}, {kMain}, {100, 900, 800, 600}},
    {"TitleAboveTheScreen", {100, -20, 800, 600}, {kMain}, {100, 30, 800, 600}},
    {"TooLittleToGrip", {1900, 100, 800, 600}, {kMain}, {1120, 100, 800, 600}},
    {"TitleBelowTheScreen", {100, 1060, 800, 600}, {kMain}, {100, 480, 800, 600}},
    {"MonitorUnplugged", {2000, 100, 800, 600}, {kMain}, {1120, 100, 800, 600}},
    {"NearestOfTwo", {5000, 100, 800, 600}, {kMain, kRight}, {2400, 100, 800, 600}},
    {"LargerThanTheScreen", {-100, -100, 4000, 3000}, {kMain}, {0, 30, 1920, 1050}},
    {"ScreenLeftOfTheMain", {-1200, 50, 800, 600}, {kMain, {-1280, 0, 1280, 1024}}, {-1200, 50, 800, 600}},
    {"NoSize", {100, 100, 0, -5}, {kMain}, {100, 100, 160, 80}},
    {"HugeNumbers", {kMax, kMax, kMax, kMax}, {kMain}, {0, 30, 1920, 1050}},
    {"HugeNegativeNumbers", {kMin, kMin, kMin, kMin}, {kMain}, {0, 30, 160, 80}},
    {"FarApart", {kMin, kMax, 800, 600}, {kRight, kMain}, {0, 480, 800, 600}},
    {"NoScreens", {5, 6, kMax, 1}, {}, {5, 6, 32767, 80}},
};
INSTANTIATE_TEST_SUITE_P(Rows, WindowPlaceTest, testing::ValuesIn(kRows), kRowName);

}  // namespace
