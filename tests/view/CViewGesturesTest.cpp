// SPDX-License-Identifier: MIT
#include "view/CViewGestures.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "view/view_matrices.h"

namespace {

/** A view of 400 x 300 pixels that writes down what gestures ask of it. */
class CRecordedTarget final : public CGestureTarget {
  public:
    int ViewHeight() const override { return 300; }
    const char* PickNode(int x, int y) override {
        log += " pick(" + Pair(x, y) + ")";
        return node.empty() ? nullptr : node.c_str();
    }
    void ZoomModel(int step) override { log += " zoom(" + std::to_string(step) + ")"; }
    void ZoomModel(const C2DRect& r) override {
        log += " box(" + Pair(static_cast<int>(r.left), static_cast<int>(r.top)) + "," +
               Pair(static_cast<int>(r.right), static_cast<int>(r.bottom)) + ")";
    }
    void DeleteNode(const char* name) override { log += std::string(" delete(") + name + ")"; }
    void StartLongPress(int periodMs) override { log += " timer(" + std::to_string(periodMs) + ")"; }
    void StopLongPress() override { log += " stop"; }
    void ShowCursor(EToolCursor cursor) override {
        if (cursor != EToolCursor::Standard) log += " cursor";
    }
    void TellLeftButtonDown() override { log += " tell"; }
    void BeginWork() override { log += " begin"; }
    void EndWork() override { log += " paint"; }

    std::string node = "Box01";
    std::string log;

  private:
    static std::string Pair(int x, int y) { return std::to_string(x) + "," + std::to_string(y); }
};

class CRecordedTool final : public CViewToolState {
  public:
    CRecordedTool(CRecordedTarget& target, bool active) : m_target(target), m_active(active) {}
    bool IsActive() const override { return m_active; }
    EToolCursor GetCursor() const override { return m_active ? EToolCursor::Color : EToolCursor::Standard; }
    void Apply(const char* name) override { m_target.log += std::string(" apply(") + name + ")"; }

  private:
    CRecordedTarget& m_target;
    bool m_active;
};

enum class ETools { None, Idle, Active, ActiveOverNothing };

/** One gesture machine with all that it needs. */
struct CRig {
    explicit CRig(ETools kind)
        : tool(target, kind == ETools::Active || kind == ETools::ActiveOverNothing),
          gestures(target, ball, kind == ETools::None ? nullptr : &tool) {
        if (kind == ETools::ActiveOverNothing) target.node.clear();
    }
    /** What a paint does. */
    void Frame() {
        const auto point = gestures.TakePendingDrag();
        if (!point) return;
        ball.SetBall(2, {0, -2.7f, 0}, view_matrices::Looking({0, -2.7, 0}, {0, 0, 1}));
        ball.Begin(point->x, point->y);
        target.log += " start(" + std::to_string(point->x) + "," + std::to_string(point->y) + ")";
    }
    [[nodiscard]] bool IsTurned() const { return ball.Matrix() != CTrackBallMotion(true).Matrix(); }

    CRecordedTarget target;
    CTrackBallMotion ball{true};
    CRecordedTool tool;
    CViewGestures gestures;
};

using CSteps = std::vector<std::function<void(CRig&)>>;

auto Down(int x, int y) {
    return [=](CRig& r) { r.gestures.LeftDown(x, y, false); };
}
auto ControlDown(int x, int y) {
    return [=](CRig& r) { r.gestures.LeftDown(x, y, true); };
}
auto Move(int x, int y, bool leftDown = true) {
    return [=](CRig& r) { r.gestures.Move(x, y, leftDown); };
}
auto Up(int x, int y) {
    return [=](CRig& r) { r.gestures.LeftUp(x, y); };
}
auto Wheel(int rotation) {
    return [=](CRig& r) { r.gestures.Wheel(rotation); };
}
auto Long(int x, int y) {
    return [=](CRig& r) { r.gestures.LongPress(x, y); };
}
const auto kFrame = [](CRig& r) { r.Frame(); };
const auto kReset = [](CRig& r) { r.gestures.ResetTrackBall(); };

struct CGestureCase {
    const char* name;
    ETools tools;
    CSteps steps;
    std::string log;
    EDragState state = EDragState::Idle;
    CPixel dragPoint{};
    bool turned = false;
};

class CViewGesturesTest : public testing::TestWithParam<CGestureCase> {};

TEST_P(CViewGesturesTest, ActsAsTheTableSays) {
    const CGestureCase& c = GetParam();
    CRig rig(c.tools);
    for (const auto& step : c.steps) step(rig);
    EXPECT_EQ(rig.target.log, c.log);
    EXPECT_EQ(rig.gestures.DragState(), c.state);
    EXPECT_EQ(rig.gestures.DragPoint(), c.dragPoint);
    EXPECT_EQ(rig.IsTurned(), c.turned);
}

constexpr auto kIdle = EDragState::Idle, kPending = EDragState::Pending, kDragging = EDragState::Dragging;

INSTANTIATE_TEST_SUITE_P(Drag, CViewGesturesTest,
                         testing::Values(CGestureCase{"WaitsForAFrame",
                                                      ETools::None,
                                                      {Down(200, 149), Move(250, 149)},
                                                      " tell paint",
                                                      kPending,
                                                      {200, 150}},
                                         CGestureCase{"FollowsTheMouse",
                                                      ETools::None,
                                                      {Down(200, 149), kFrame, Move(250, 139)},
                                                      " tell paint start(200,150) paint",
                                                      kDragging,
                                                      {250, 160},
                                                      true},
                                         CGestureCase{"EndsOnRelease",
                                                      ETools::None,
                                                      {Down(200, 149), kFrame, Up(250, 149)},
                                                      " tell paint start(200,150) stop paint",
                                                      kIdle,
                                                      {0, 0},
                                                      true},
                                         CGestureCase{"EndsWhenTheButtonIsSeenUp",
                                                      ETools::None,
                                                      {Down(200, 149), kFrame, Move(250, 149, false),
                                                       Move(90, 9, false)},
                                                      " tell paint start(200,150) paint",
                                                      kIdle,
                                                      {0, 0},
                                                      true},
                                         CGestureCase{"ReleaseBeforeAnyFrameTurnsNothing",
                                                      ETools::None,
                                                      {Down(200, 149), Up(300, 149), kFrame},
                                                      " tell paint stop paint",
                                                      kIdle},
                                         CGestureCase{"StartsAnewAcrossTheOutline",
                                                      ETools::None,
                                                      {Down(200, 149), kFrame, Move(390, 149), kFrame},
                                                      " tell paint start(200,150) paint start(390,150)",
                                                      kDragging,
                                                      {390, 150},
                                                      true},
                                         CGestureCase{"SecondPressDoesNotMoveIt",
                                                      ETools::None,
                                                      {Down(200, 149), kFrame, Down(10, 10)},
                                                      " tell paint start(200,150) tell paint",
                                                      kDragging,
                                                      {200, 150}},
                                         CGestureCase{"ResetEndsIt",
                                                      ETools::None,
                                                      {Down(200, 149), kFrame, Move(250, 149), kReset,
                                                       Move(280, 149), Up(280, 149)},
                                                      " tell paint start(200,150) paint stop",
                                                      kIdle},
                                         CGestureCase{"MovesWithoutPressDoNothing",
                                                      ETools::None,
                                                      {Move(10, 10, false), Move(50, 50, false)},
                                                      "",
                                                      kIdle}),
                         [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Zoom, CViewGesturesTest,
    testing::Values(
        CGestureCase{"BoxIsNormalised",
                     ETools::None,
                     {ControlDown(200, 100), Move(150, 160), Up(150, 160)},
                     " tell paint paint stop box(150,100,200,160) paint",
                     kIdle},
        CGestureCase{"BoxEndsAtTheLastMove",
                     ETools::None,
                     {ControlDown(20, 10), Move(50, 60), Up(90, 95)},
                     " tell paint paint stop box(20,10,50,60) paint",
                     kIdle},
        CGestureCase{"ClickIsABoxWithoutArea",
                     ETools::None,
                     {ControlDown(20, 10), Up(20, 10)},
                     " tell paint stop box(20,10,20,10) paint",
                     kIdle},
        CGestureCase{"BoxStartsNoLongPress", ETools::Idle, {ControlDown(20, 10)}, " tell paint", kIdle},
        CGestureCase{"BoxIgnoresTools",
                     ETools::Active,
                     {ControlDown(20, 10), Up(20, 10)},
                     " tell paint stop box(20,10,20,10) paint",
                     kIdle},
        CGestureCase{"WheelAway", ETools::None, {Wheel(120)}, " zoom(-20)", kIdle},
        CGestureCase{"WheelTowards", ETools::None, {Wheel(-120)}, " zoom(20)", kIdle},
        CGestureCase{"WheelOfZero", ETools::None, {Wheel(0), Wheel(1)}, " zoom(20) zoom(-20)", kIdle},
        CGestureCase{"WheelWaitsForTheDrag",
                     ETools::None,
                     {Down(200, 149), Wheel(120), kFrame, Wheel(120), Up(200, 149), Wheel(120)},
                     " tell paint start(200,150) stop paint zoom(-20)",
                     kIdle}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Nodes, CViewGesturesTest,
    testing::Values(
        CGestureCase{"LongPressDeletes",
                     ETools::Idle,
                     {Down(200, 149), Long(202, 147)},
                     " timer(500) tell paint pick(200,149) begin delete(Box01)",
                     kPending,
                     {200, 150}},
        CGestureCase{"LongPressThatStraysDoesNot",
                     ETools::Idle,
                     {Down(200, 149), Long(203, 149), Long(200, 146)},
                     " timer(500) tell paint",
                     kPending,
                     {200, 150}},
        CGestureCase{"LongPressOverNothing", ETools::ActiveOverNothing, {Long(0, 0)}, " pick(0,0)", kIdle},
        CGestureCase{
            "NoToolStateNoLongPress", ETools::None, {Down(200, 149)}, " tell paint", kPending, {200, 150}},
        CGestureCase{"ToolTakesThePress",
                     ETools::Active,
                     {Down(200, 149), Move(210, 149)},
                     " pick(200,149) apply(Box01) tell paint cursor",
                     kIdle},
        CGestureCase{"ToolOverNothingDrags",
                     ETools::ActiveOverNothing,
                     {Down(200, 149)},
                     " pick(200,149) tell paint",
                     kPending,
                     {200, 150}}),
    [](const auto& row) { return row.param.name; });

}  // namespace
