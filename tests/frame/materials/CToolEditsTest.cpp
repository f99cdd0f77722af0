// SPDX-License-Identifier: MIT
#include "frame/materials/CToolEdits.h"

#include <gtest/gtest.h>

#include "session/CSessionStage.h"

namespace {

class CToolEditsTest : public testing::Test {
  protected:
    CToolEditsTest() { stage.Open(stage.Add("a.3ds")); }
    [[nodiscard]] std::size_t Steps() const { return stage.session.Edits().Done().size(); }
    bool Slide(int position) {
        values.transparency = position;
        return edits.Follow(EMaterialTool::Transparency, values);
    }
    [[nodiscard]] float Transparency() const {
        return std::get<CTransparencyEdit>(stage.view.applied.back()).value;
    }

    CSessionStage stage;
    CToolEdits edits{stage.session};
    CToolValues values;
};

TEST_F(CToolEditsTest, EachPressIsAStepUnlessItRepeatsTheLast) {
    EXPECT_TRUE(edits.Use(EMaterialTool::Color, "a", values));
    EXPECT_TRUE(edits.Use(EMaterialTool::Color, "a", values));
    EXPECT_EQ(Steps(), 1u);
    EXPECT_EQ(stage.session.Edits().NextUndo()->what, L"colour of a");
    EXPECT_TRUE(edits.Use(EMaterialTool::Color, "b", values));
    EXPECT_TRUE(edits.Use(EMaterialTool::Shininess, "b", values));
    EXPECT_EQ(Steps(), 3u);
    EXPECT_FALSE(edits.Use(EMaterialTool::Color, "nothing", values));
    EXPECT_FALSE(edits.Use(EMaterialTool::Filter, "a", values));
    EXPECT_EQ(Steps(), 3u);
    stage.session.Undo();
    EXPECT_TRUE(edits.Use(EMaterialTool::Shininess, "b", values)) << "it was undone meanwhile";
    EXPECT_EQ(Steps(), 3u);
}

TEST_F(CToolEditsTest, AMovementOfTheSliderIsOneStep) {
    EXPECT_FALSE(Slide(3)) << "no part was pressed yet";
    values.transparency = 5;
    ASSERT_TRUE(edits.Use(EMaterialTool::Transparency, "a", values));
    for (const int position : {6, 7, 8, 7}) EXPECT_TRUE(Slide(position));
    EXPECT_EQ(Steps(), 2u);
    EXPECT_FLOAT_EQ(Transparency(), 0.7f);
    edits.EndFollowing();
    EXPECT_TRUE(Slide(9));
    EXPECT_EQ(Steps(), 3u);
    stage.session.Undo();
    EXPECT_FLOAT_EQ(Transparency(), 0.7f);
    EXPECT_TRUE(Slide(2)) << "after an undo a movement goes on as another step";
    stage.session.Undo();
    stage.session.Undo();
    EXPECT_FLOAT_EQ(Transparency(), 0.5f) << "as it was before the first movement";
}

TEST_F(CToolEditsTest, OnlyTheToolThatWasUsedFollows) {
    ASSERT_TRUE(edits.Use(EMaterialTool::Color, "a", values));
    EXPECT_FALSE(Slide(1));
    ASSERT_TRUE(edits.Use(EMaterialTool::Transparency, "b", values));
    EXPECT_TRUE(Slide(2));
    edits.Forget();
    EXPECT_FALSE(Slide(3));
    ASSERT_TRUE(edits.Use(EMaterialTool::Transparency, "b", values));
    stage.session.DeleteNode("b");
    EXPECT_FALSE(Slide(4)) << "it is gone";
    EXPECT_EQ(stage.session.Edits().NextUndo()->what, L"deleted b");
}

}  // namespace
