// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "frame/model_list/CStripLayout.h"
#include "picture/shrink_image.h"

namespace {

CStripLayout Layout(std::size_t count, bool fromRight) {
    CStripLayout layout;
    layout.SetWindow(350, fromRight);
    layout.SetCells(count, 100);
    return layout;
}

using CRange = CStripLayout::CRange;

TEST(CStripLayoutTest, ShowsAndFindsCells) {
    CStripLayout layout = Layout(5000, false);
    EXPECT_EQ(layout.Visible(), (CRange{0, 4}));
    layout.ScrollBy(250);
    EXPECT_EQ(layout.Visible(), (CRange{2, 6}));
    EXPECT_EQ(layout.Left(3), 50);
    EXPECT_EQ(layout.At(49), 2u);
    EXPECT_EQ(layout.At(50), 3u);
    EXPECT_EQ(layout.At(350), std::nullopt);
    layout.ScrollTo(1 << 30);
    EXPECT_EQ(layout.Offset(), 5000 * 100 - 350);
    EXPECT_EQ(layout.Visible(), (CRange{4996, 5000}));
    EXPECT_FALSE(layout.ScrollBy(1));
}

TEST(CStripLayoutTest, RunsFromTheRight) {
    CStripLayout layout = Layout(10, true);
    EXPECT_EQ(layout.Left(0), 250);
    EXPECT_EQ(layout.At(349), 0u);
    EXPECT_EQ(layout.At(0), 3u);
    layout.ScrollBy(layout.TowardsEnd(-100));  // the mouse goes to the left
    EXPECT_EQ(layout.Offset(), 100);
    EXPECT_EQ(layout.Left(1), 250);
}

TEST(CStripLayoutTest, ScrollsNoFartherThanNeeded) {
    CStripLayout layout = Layout(10, false);
    layout.ScrollIntoView(2);
    EXPECT_EQ(layout.Offset(), 0);
    layout.ScrollIntoView(5);
    EXPECT_EQ(layout.Offset(), 250);
    layout.ScrollIntoView(3);
    EXPECT_EQ(layout.Offset(), 250);
    layout.ScrollIntoView(0);
    EXPECT_EQ(layout.Offset(), 0);
    layout.ScrollToMiddle(5);
    EXPECT_EQ(layout.Left(5), 125);
    layout.SetCells(2, 100);  // files have gone
    EXPECT_EQ(layout.Offset(), 0);
    EXPECT_EQ(layout.At(250), std::nullopt);
    EXPECT_EQ(Layout(0, false).Visible(), (CRange{0, 0}));
}

TEST(ShrinkImageTest, TakesTheMeanByAlpha) {
    const CImage wide{4, 2, {255, 0, 0, 255, 0, 0, 255, 255, 9, 9, 9, 0, 0, 200, 0, 255,
                             255, 0, 0, 255, 0, 0, 255, 255, 9, 9, 9, 0, 0, 200, 0, 255}};
    const CImage small = ShrinkImage(wide, 2);
    EXPECT_EQ(small.width, 2);
    EXPECT_EQ(small.height, 1);
    EXPECT_EQ(small.rgba, (std::vector<std::uint8_t>{128, 0, 128, 255, 0, 200, 0, 128}));
    EXPECT_EQ(ShrinkImage(wide, 3).width, 3);
    EXPECT_EQ(ShrinkImage(wide, 4).rgba, wide.rgba);
    EXPECT_EQ(ShrinkImage(CImage{1000, 1, std::vector<std::uint8_t>(4000, 7)}, 10).height, 1);
}

}  // namespace
