// SPDX-License-Identifier: MIT
#include "view/CViewGestures.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "row_name.h"
#include "view/gesture_steps.h"
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
    void ZoomModelAt(int step, int x, int y) override {
        log += " zoom(" + std::to_string(step) + " at " + Pair(x, y) + ")";
    }
    void PanModel(int dx, int dy) override { log += " pan(" + Pair(dx, dy) + ")"; }
    void TurnModel(double rightDeg, double upDeg) override {
        log += " turn(" + Pair(static_cast<int>(rightDeg), static_cast<int>(upDeg)) + ")";
    }
    bool CenterModelAt(int x, int y) override {
        log += " center(" + Pair(x, y) + ")";
        return !node.empty();
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

    static std::string Pair(int x, int y) { return std::to_string(x) + "," + std::to_string(y); }

    std::string node = "Box01";
    std::string log;
};

class CRecordedTool final : public CViewToolState {
  public:
    CRecordedTool(CRecordedTarget& target, bool active) : m_target(target), m_active(active) {}
    bool IsActive() const override { return m_active; }
    EToolCursor GetCursor() const override { return m_active ? EToolCursor::Color : EToolCursor::Standard; }
    void Apply(const char* name) override { m_target.log += std::string(" apply(") + name + ")"; }
    void Miss() override { m_target.log += " miss"; }

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
    void Do(const std::string& what, int x, int y) {
        if (what == "frame") return Frame();
        if (what == "pan-up")
            target.log += gestures.PanUp() ? " moved" : " clicked";
        else
            gesture_steps::Do(gestures, what, x, y);
    }
    /** What the gestures did, and what they leave. */
    [[nodiscard]] std::string Outcome() const {
        const CPixel point = gestures.DragPoint();
        const bool turned = ball.Matrix() != CTrackBallMotion(true).Matrix();
        constexpr const char* kStates[] = {" idle", " pending", " dragging"};
        return target.log + kStates[static_cast<int>(gestures.DragState())] +
               (point == CPixel{} ? "" : "(" + CRecordedTarget::Pair(point.x, point.y) + ")") +
               (turned ? " turned" : "");
    }

    CRecordedTarget target;
    CTrackBallMotion ball{true};
    CRecordedTool tool;
    CViewGestures gestures;
};

struct CGestureCase {
    const char* name;
    ETools tools;
    const char* steps;  ///< of CRig::Do, each with x and y
    const char* outcome;
};

class CViewGesturesTest : public testing::TestWithParam<CGestureCase> {};

TEST_P(CViewGesturesTest, ActsAsTheTableSays) {
    CRig rig(GetParam().tools);
    std::istringstream steps(GetParam().steps);
    std::string what;
    for (int x = 0, y = 0; steps >> what >> x >> y;) rig.Do(what, x, y);
    ASSERT_TRUE(steps.eof()) << "a slip in the table: " << what;
    EXPECT_EQ(rig.Outcome(), GetParam().outcome);
}

constexpr ETools kNone = ETools::None, kIdle = ETools::Idle, kActive = ETools::Active,
                 kOverNothing = ETools::ActiveOverNothing;

const CGestureCase kDrag[] = {
    {"WaitsForAFrame", kNone, "down 200 149 move 250 149", " tell paint pending(200,150)"},
    {"FollowsTheMouse", kNone, "down 200 149 frame 0 0 move 250 139",
     " tell paint start(200,150) paint dragging(250,160) turned"},
    {"EndsOnRelease", kNone, "down 200 149 frame 0 0 up 250 149",
     " tell paint start(200,150) stop paint idle turned"},
    {"EndsWhenTheButtonIsSeenUp", kNone, "down 200 149 frame 0 0 move-up 250 149 move-up 90 9",
     " tell paint start(200,150) paint idle turned"},
    {"ReleaseBeforeAnyFrameTurnsNothing", kNone, "down 200 149 up 300 149 frame 0 0",
     " tell paint stop paint idle"},
    {"StartsAnewAcrossTheOutline", kNone, "down 200 149 frame 0 0 move 390 149 frame 0 0",
     " tell paint start(200,150) paint start(390,150) dragging(390,150) turned"},
    {"SecondPressDoesNotMoveIt", kNone, "down 200 149 frame 0 0 down 10 10",
     " tell paint start(200,150) tell paint dragging(200,150)"},
    {"ResetEndsIt", kNone, "down 200 149 frame 0 0 move 250 149 reset 0 0 move 280 149 up 280 149",
     " tell paint start(200,150) paint stop idle"},
    {"MovesWithoutPressDoNothing", kNone, "move-up 10 10 move-up 50 50", " idle"},
};
INSTANTIATE_TEST_SUITE_P(Drag, CViewGesturesTest, testing::ValuesIn(kDrag), kRowName);

const CGestureCase kZoom[] = {
    {"BoxIsNormalised", kNone, "control-down 200 100 move 150 160 up 150 160",
     " tell paint paint stop box(150,100,200,160) paint idle"},
    {"BoxEndsAtTheLastMove", kNone, "control-down 20 10 move 50 60 up 90 95",
     " tell paint paint stop box(20,10,50,60) paint idle"},
    {"BoxIgnoresTools", kActive, "control-down 20 10 up 20 10",
     " tell paint stop box(20,10,20,10) paint idle"},
    {"BoxStartsNoLongPress", kIdle, "control-down 20 10", " tell paint idle"},
    {"WheelAwayAndTowards", kNone, "wheel 120 0 wheel -120 0", " zoom(-20) zoom(20) idle"},
    {"WheelOfZero", kNone, "wheel 0 0 wheel 1 0", " zoom(20) zoom(-20) idle"},
    {"WheelWaitsForTheDrag", kNone, "down 200 149 wheel 120 0 frame 0 0 wheel 120 0 up 200 149 wheel 120 0",
     " tell paint start(200,150) stop paint zoom(-20) idle"},
};
INSTANTIATE_TEST_SUITE_P(Zoom, CViewGesturesTest, testing::ValuesIn(kZoom), kRowName);

const CGestureCase kNodes[] = {
    {"LongPressDeletes", kIdle, "down 200 149 long 202 147",
     " timer(500) tell paint pick(200,149) begin delete(Box01) pending(200,150)"},
    {"LongPressThatStraysDoesNot", kIdle, "down 200 149 long 203 149 long 200 146",
     " timer(500) tell paint pending(200,150)"},
    {"LongPressOverNothing", kOverNothing, "long 0 0", " pick(0,0) idle"},
    {"ToolTakesThePress", kActive, "down 200 149 move 210 149",
     " pick(200,149) apply(Box01) tell paint cursor idle"},
    {"ToolOverNothingDrags", kOverNothing, "down 200 149", " pick(200,149) tell paint pending(200,150)"},
    {"ToolMissesWithAClick", kOverNothing, "down 200 149 move 201 148 up 201 148",
     " pick(200,149) tell paint cursor stop paint miss idle"},
    {"ToolDoesNotMissWithADrag", kOverNothing, "down 200 149 move 203 149 move 200 149 up 200 149",
     " pick(200,149) tell paint cursor cursor stop paint idle"},
};
INSTANTIATE_TEST_SUITE_P(Nodes, CViewGesturesTest, testing::ValuesIn(kNodes), kRowName);

const CGestureCase kOthers[] = {
    {"PanIsToldOfEachWay", kIdle,
     "pan-down 10 20 move-up 15 18 move-up 15 18 move-up 5 18 pan-up 0 0 move-up 1 1",
     " pan(5,-2) paint pan(-10,0) paint paint moved idle"},
    {"PanWithoutAMoveIsAClick", kNone, "pan-down 10 20 move-up 10 20 pan-up 0 0", " clicked idle"},
    {"PanWaitsForTheDrag", kNone, "down 200 149 frame 0 0 pan-down 200 149 move 200 149 pan-up 0 0",
     " tell paint start(200,150) paint clicked dragging(200,150)"},
    {"APressEndsThePan", kNone, "pan-down 10 20 down 10 20 frame 0 0 move 15 20",
     " tell paint start(10,279) paint dragging(15,279) turned"},
    {"NothingElseDuringADrag", kNone, "down 200 149 alt-wheel 5 5 plus 0 0", " tell paint pending(200,150)"},
    {"DoubleClickCentersAndDeletesNothing", kIdle, "down 20 30 double 20 30",
     " timer(500) tell paint stop center(20,30) paint pending(20,269)"},
    {"DoubleClickOverNothing", kOverNothing, "double 20 30", " stop idle"},
    {"DoubleClickIsTheTools", kActive, "double 20 30", " stop idle"},
    {"FingersAddUpToSteps", kNone, "pinch 5 6 pinch 5 6 pinch 5 6", " zoom(-1 at 5,6) paint idle"},
};
INSTANTIATE_TEST_SUITE_P(Others, CViewGesturesTest, testing::ValuesIn(kOthers), kRowName);

}  // namespace
