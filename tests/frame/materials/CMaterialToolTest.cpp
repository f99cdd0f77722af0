// SPDX-License-Identifier: MIT
#include "frame/materials/CMaterialTool.h"

#include <gtest/gtest.h>

#include <set>

namespace {

/** A toolbar with some buttons; keeps what is done to it. */
class CPaperBar final : public CToolButtons {
  public:
    explicit CPaperBar(std::set<int> tools) : m_tools(std::move(tools)) {}
    bool HasTool(int identifier) const override { return m_tools.contains(identifier); }
    void ToggleTool(int identifier, bool on) override {
        EXPECT_TRUE(HasTool(identifier));
        if (on)
            pressed.insert(identifier);
        else
            pressed.erase(identifier);
    }
    void Refresh() override { ++refreshes; }

    std::set<int> pressed;
    int refreshes = 0;

  private:
    std::set<int> m_tools;
};

constexpr int kColor = 101, kShine = 102;

TEST(CMaterialToolTest, ShowsTheToolOnEachBarThatHasIt) {
    CPaperBar both({kColor, kShine}), one({kShine});
    CMaterialTool tool;
    int stops = 0;
    tool.SetActions({.stopSlideShow = [&] { ++stops; }});
    tool.SetToolBars(&both, &one);
    EXPECT_FALSE(tool.IsActive());
    EXPECT_FALSE(tool.SetTool(EMaterialTool::None, CMaterialTool::kNoIdentifier));
    EXPECT_EQ(both.refreshes, 0);

    EXPECT_TRUE(tool.SetTool(EMaterialTool::Color, kColor));
    EXPECT_TRUE(tool.IsActive());
    EXPECT_EQ(tool.GetCursor(), EToolCursor::Color);
    EXPECT_EQ(both.pressed, std::set<int>{kColor});
    EXPECT_FALSE(tool.SetTool(EMaterialTool::Color, kColor));
    EXPECT_EQ(both.refreshes, 1);
    EXPECT_EQ(one.refreshes, 1);

    EXPECT_TRUE(tool.SetTool(EMaterialTool::Shininess, kShine));
    EXPECT_EQ(both.pressed, std::set<int>{kShine});
    EXPECT_EQ(one.pressed, std::set<int>{kShine});
    EXPECT_EQ(stops, 2);

    EXPECT_TRUE(tool.SetTool(EMaterialTool::None, CMaterialTool::kNoIdentifier));
    EXPECT_TRUE(both.pressed.empty() && one.pressed.empty());
    EXPECT_EQ(tool.GetCursor(), EToolCursor::Standard);
    EXPECT_EQ(stops, 2) << "no tool, no need to stop";
}

TEST(CMaterialToolTest, NeedsNoBars) {
    CMaterialTool tool;
    CPaperBar bar({kColor});
    tool.SetToolBars(nullptr, &bar);
    EXPECT_TRUE(tool.SetTool(EMaterialTool::Replace, kColor));
    EXPECT_EQ(bar.pressed, std::set<int>{kColor});
    tool.SetToolBars(nullptr, nullptr);
    EXPECT_TRUE(tool.SetTool(EMaterialTool::Filter, kShine));
    tool.Apply("node");
    tool.Miss();
}

}  // namespace
