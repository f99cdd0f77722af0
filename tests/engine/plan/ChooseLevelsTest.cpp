// SPDX-License-Identifier: MIT
#include "engine/plan/choose_levels.h"

#include <gtest/gtest.h>

#include "engine/plan/CFrameBudget.h"

namespace {

/** Nodes of 64,000 triangles with levels of a quarter each, whose error grows fourfold; the n-th is n times as large on
 * the screen as the first. */
CLevelChoices Alike(unsigned count) {
    CLevelChoices choices;
    for (unsigned n = 0; n < count; ++n) {
        CNodeOptions node;
        node.first = static_cast<std::uint32_t>(choices.options.size());
        node.count = 4;
        node.pixels = static_cast<float>(n + 1);
        float error = 0.25f * node.pixels, cost = 64'000;
        choices.options.push_back({0, cost});
        for (unsigned level = 1; level < node.count; ++level, error *= 4)
            choices.options.push_back({error, cost /= 4});
        choices.nodes.push_back(node);
    }
    return choices;
}

double CostOf(const CLevelChoices& choices) {
    double sum = 0;
    for (const CNodeOptions& node : choices.nodes)
        sum += static_cast<double>(
            node.chosen == node.count ? kBoxCost : choices.options[node.first + node.chosen].cost);
    return sum;
}

TEST(ChooseLevelsTest, AllIsDrawnInFullWhereItFits) {
    CLevelChoices choices = Alike(3);
    float error = 0;
    EXPECT_EQ(ChooseLevels(choices, {200'000}, error), 192'000);
    EXPECT_EQ(error, 0);
    for (const CNodeOptions& node : choices.nodes) EXPECT_EQ(node.chosen, 0u);
}

TEST(ChooseLevelsTest, WhatDoesNotFitGetsTheSameErrorEverywhere) {
    for (const double most : {600'000.0, 150'000.0, 40'000.0, 12'000.0}) {
        CLevelChoices choices = Alike(10);
        float error = 0;
        const double cost = ChooseLevels(choices, {most}, error);
        EXPECT_LE(cost, most);
        EXPECT_EQ(cost, CostOf(choices));
        EXPECT_GT(cost, most / 4);
        for (const CNodeOptions& node : choices.nodes) {
            ASSERT_LT(node.chosen, node.count);
            EXPECT_LE(choices.options[node.first + node.chosen].error, error);
            if (node.chosen + 1 == node.count) continue;
            EXPECT_GT(choices.options[node.first + node.chosen + 1].error, error);
        }
    }
}

TEST(ChooseLevelsTest, SmallChangesOfTheBudgetChangeNothing) {
    CLevelChoices choices = Alike(10);
    float error = 0;
    const double cost = ChooseLevels(choices, {150'000}, error);
    const float before = error;
    for (const double most : {cost * 1.01, cost * 1.2, cost * 1.01}) {
        EXPECT_EQ(ChooseLevels(choices, {most}, error), cost);
        EXPECT_EQ(error, before);
    }
    EXPECT_GT(ChooseLevels(choices, {cost * 4}, error), cost);
    EXPECT_LT(error, before);
}

TEST(ChooseLevelsTest, WhatWouldShowMayCostMore) {
    float error = 0;
    CLevelChoices choices = Alike(10);  // 640,000 in full, 592,000 within kShownError
    EXPECT_LE(ChooseLevels(choices, {400'000, 500'000}, error), 500'000);
    EXPECT_GT(CostOf(choices), 400'000);
    // No more than what keeps the error from showing.
    error = 0;
    const double cost = ChooseLevels(choices, {100'000, 5e6}, error);
    EXPECT_GT(cost, 450'000);
    EXPECT_LT(cost, 600'000);
}

TEST(ChooseLevelsTest, TheSmallestBecomeBoxesWhereNothingElseFits) {
    CLevelChoices choices = Alike(10);  // 10,000 at the coarsest
    float error = 0;
    EXPECT_LE(ChooseLevels(choices, {4'000}, error), 6'000);
    EXPECT_EQ(choices.nodes.front().chosen, choices.nodes.front().count);
    EXPECT_EQ(choices.nodes.back().chosen, 3u);
}

TEST(ChooseLevelsTest, NodesWithoutFormsAreLeftAlone) {
    CLevelChoices choices = Alike(2);
    choices.nodes[1].count = 0;
    float error = 0;
    EXPECT_EQ(ChooseLevels(choices, {100'000}, error), 64'000);
    EXPECT_GE(ChooseLevels(choices, {0}, error), 0);
}

/** A machine with a time for each frame and each triangle draws a scene of that many triangles, or as many as fit. */
double SettledMs(double msPerMillion, double triangles) {
    CFrameBudget budget;
    double ms = 0;
    for (int frame = 0; frame < 60; ++frame) {
        const double drawn = std::min(triangles, budget.MostCost());
        ms = 4 + drawn * msPerMillion * 1e-6;
        budget.Learn(drawn, ms);
    }
    return ms;
}

TEST(FrameBudgetTest, FindsWhatFitsIntoTheFrame) {
    for (const double speed : {20.0, 45.0, 100.0})
        EXPECT_NEAR(SettledMs(speed, 1e9), CFrameBudget::kTargetMs, 1) << speed;
    EXPECT_LT(SettledMs(45, 100'000), 10);
}

TEST(FrameBudgetTest, PixelsThatTakeLongDoNotCostAllTriangles) {
    CFrameBudget budget;
    for (int frame = 0; frame < 60; ++frame) budget.Learn(2'000, 80);
    EXPECT_NEAR(budget.MostCost(), CFrameBudget::kLeastCost, 1);
}

TEST(FrameBudgetTest, OneSlowFrameCountsMoreThanOneQuickFrame) {
    CFrameBudget slow, quick;
    for (int frame = 0; frame < 60; ++frame) {
        slow.Learn(400'000, 28);
        quick.Learn(400'000, 28);
    }
    const double settled = slow.MostCost();
    slow.Learn(400'000, 52);
    quick.Learn(400'000, 16);
    EXPECT_LT(slow.MostCost(), settled * 0.75);
    EXPECT_LT(quick.MostCost(), settled * 1.1);
    EXPECT_GT(quick.MostCost(), settled);
}

}  // namespace
