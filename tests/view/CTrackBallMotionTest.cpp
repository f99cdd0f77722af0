// SPDX-License-Identifier: MIT
#include "view/CTrackBallMotion.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "row_name.h"
#include "view/view_matrices.h"

namespace {

constexpr double kPi = std::numbers::pi;

CVec3 Floats(CVec3d v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/** A unit ball seen from the front, its outline a circle of 146 pixels round (200, 150). */
CTrackBallMotion FromTheFront() {
    CTrackBallMotion ball(true);
    const CVec3d eye{0, -2.7, 0};
    ball.SetBall(2, Floats(eye), view_matrices::Looking(eye, {0, 0, 1}));
    return ball;
}

CVec3d Turned(const CTrackBallMotion& ball, CVec3d v) {
    const auto& m = ball.Matrix();
    return {m[0] * v.x + m[4] * v.y + m[8] * v.z, m[1] * v.x + m[5] * v.y + m[9] * v.z,
            m[2] * v.x + m[6] * v.y + m[10] * v.z};
}

/** How far the matrix is from a rotation; not a number when it holds one. */
double Distortion(const CTrackBallMotion& ball) {
    const CVec3d x = Turned(ball, {1, 0, 0}), y = Turned(ball, {0, 1, 0}), z = Turned(ball, {0, 0, 1});
    return std::abs(Dot(x, x) - 1) + std::abs(Dot(y, y) - 1) + std::abs(Dot(x, y)) + Length(Cross(x, y) - z);
}

void ExpectNear(CVec3d actual, CVec3d expected, double tolerance) {
    EXPECT_LE(Length(actual - expected), tolerance) << actual.x << ", " << actual.y << ", " << actual.z;
}

// --- a drag on the ball ---

struct CGrabCase {
    const char* name;
    CVec3d eye, up;
    double radius;
    CVec3d pivot{0, 0, 0};
    double scale = 1;
};

class CTrackBallGrabTest : public testing::TestWithParam<CGrabCase> {};

/** Nearest point of the ball under a window point, found by walking along the ray instead
 * of solving for it. */
CVec3d PointUnder(const CViewMatrices& m, double radius, double x, double y) {
    const CSavedView view(m);
    const CVec3d from = *view.Unproject(x, y, 0), to = *view.Unproject(x, y, 1);
    for (double t = 0; t <= 1; t += 1e-6)
        if (const CVec3d p = from + (to - from) * t; Length(p) <= radius) return p;
    return {};
}

TEST_P(CTrackBallGrabTest, KeepsTheGrabbedPointUnderTheMouse) {
    const CGrabCase& c = GetParam();
    CViewMatrices m = view_matrices::Looking(c.eye, c.up, 0.3 * c.radius, 20 * c.radius);
    m.modelView.m = {c.scale, 0, 0,       0, 0,         c.scale,   0,         0,
                     0,       0, c.scale, 0, c.pivot.x, c.pivot.y, c.pivot.z, 1};
    CTrackBallMotion ball(true);
    for (const auto& [x0, y0, x1, y1] : {std::array{200, 150, 240, 160}, std::array{170, 120, 230, 190}}) {
        ball.Reset();
        ball.SetBall(static_cast<float>(2 * c.radius), Floats(c.eye), m);
        const CVec3d grabbed = PointUnder(m, c.radius, x0, y0);
        ASSERT_NE(grabbed, CVec3d{});
        ball.Begin(x0, y0);
        EXPECT_TRUE(ball.Drag(x0 + 20, y0 - 15));  // the way there must not matter
        EXPECT_TRUE(ball.Drag(x1, y1));
        const CVec3d shown = view_matrices::Project(m, Turned(ball, grabbed));
        EXPECT_NEAR(shown.x, x1, 0.05);
        EXPECT_NEAR(shown.y, y1, 0.05);
        EXPECT_EQ(ball.OrbitAngle(), 0);
    }
}

const CGrabCase kCameras[] = {
    {"Top", {0, 0, 2.7}, {0, 1, 0}, 1},
    {"Iso", {2, -2, 2}, {0, 0, 1}, 1.2},
    {"Near", {0, -1.3, 0.2}, {0, 0, 1}, 1},
    {"TinyModel", {0, -2.7e-6, 0}, {0, 0, 1}, 1e-6},
    {"HugeModel", {0, -2.7e8, 0}, {0, 0, 1}, 1e8},
    {"PivotOffset", {0, -2.7, 0}, {0, 0, 1}, 1, {0.1, 0.3, -0.1}},
    {"Scaled", {0, -2.7, 0}, {0, 0, 1}, 1, {0, 0, 0}, 0.8},
};
INSTANTIATE_TEST_SUITE_P(Cameras, CTrackBallGrabTest, testing::ValuesIn(kCameras), kRowName);

// --- beside the ball ---

using CPath = std::vector<std::array<int, 2>>;
constexpr std::array<int, 2> kRight{390, 150}, kTop{200, 299}, kLeft{10, 150}, kBottom{200, 1};

struct CSpinCase {
    const char* name;
    CPath path;
    CVec3d right;  ///< where the model's point at the right ends
    double orbit;  ///< accumulated
};

class CTrackBallSpinTest : public testing::TestWithParam<CSpinCase> {};

TEST_P(CTrackBallSpinTest, TurnsAboutTheLineOfSight) {
    const CSpinCase& c = GetParam();
    CTrackBallMotion ball = FromTheFront();
    ball.Begin(c.path[0][0], c.path[0][1]);
    EXPECT_TRUE(ball.IsMissed());
    for (const auto& [x, y] : c.path) EXPECT_TRUE(ball.Drag(x, y));
    EXPECT_NEAR(ball.OrbitAngle(), c.orbit, 1e-9);
    for (const double times : {1.0, 2.0}) {
        ball.Release(c.path.back()[0], c.path.back()[1]);
        EXPECT_EQ(ball.OrbitAngle(), 0);
        EXPECT_NEAR(ball.AccumulatedOrbitAngle(), times * c.orbit, 1e-9);
        if (times == 1.0) ExpectNear(Turned(ball, {1, 0, 0}), c.right, 1e-6);
        ball.Begin(c.path[0][0], c.path[0][1]);
        for (const auto& [x, y] : c.path) (void)ball.Drag(x, y);
    }
}

const CSpinCase kPaths[] = {
    {"QuarterCounterClockwise", {kRight, kTop}, {0, 0, 1}, -kPi / 2},
    {"OverTheSeam", {kTop, kLeft, kBottom}, {-1, 0, 0}, -kPi},
    {"WholeTurnAndBack", {kTop, kLeft, kBottom, kRight, kBottom, kLeft, kTop}, {1, 0, 0}, 0},
    {"WholeTurn", {kRight, kBottom, kLeft, kTop, kRight}, {1, 0, 0}, 2 * kPi},
};
INSTANTIATE_TEST_SUITE_P(Paths, CTrackBallSpinTest, testing::ValuesIn(kPaths), kRowName);

TEST(CTrackBallMotionTest, CannotFollowAcrossTheOutline) {
    CTrackBallMotion ball = FromTheFront();
    ball.Begin(200, 150);
    EXPECT_TRUE(ball.Drag(330, 150));
    EXPECT_FALSE(ball.Drag(390, 150));
    EXPECT_TRUE(ball.IsMissed());
    // The grabbed point went as far as the outline, 1 / 2.7 before the centre.
    const CVec3d rim{std::sqrt(1 - 1 / (2.7 * 2.7)), -1 / 2.7, 0};
    ExpectNear(Turned(ball, {0, -1, 0}), rim, 0.01);
}

// --- the orbit of the eye ---

struct COrbitCase {
    const char* name;
    const char* camera;
    CPath path;
    CVec3d eye, expected;
};

class CTrackBallOrbitTest : public testing::TestWithParam<COrbitCase> {};

TEST_P(CTrackBallOrbitTest, TurnsTheEye) {
    const COrbitCase& c = GetParam();
    CTrackBallMotion ball = FromTheFront();
    ball.Begin(c.path[0][0], c.path[0][1]);
    for (const auto& [x, y] : c.path) (void)ball.Drag(x, y);
    const CVec3 from = Floats(c.eye);
    float eye[3] = {from.x, from.y, from.z}, still[3] = {1, 2, 3};
    ball.OrbitEye(c.camera, eye);  // the drag under way counts
    ExpectNear({eye[0], eye[1], eye[2]}, c.expected, 1e-5);

    ball.Reset();
    ball.OrbitEye(c.camera, still);
    ExpectNear({still[0], still[1], still[2]}, {1, 2, 3}, 0);
}

const CPath kQuarter{kRight, kBottom}, kQuarterBack{kRight, kTop};
const double kThird = 1 / std::sqrt(3.0);

const COrbitCase kOrbits[] = {
    {"Front", "frt_cam", kQuarter, {1, 5, 0}, {0, 5, 1}},
    {"Top", "top_cam", kQuarter, {1, 0, 5}, {0, 1, 5}},
    {"IsoAlongItsAxis", "iso_cam", kQuarter, {2, -2, 2}, {2, -2, 2}},
    {"IsoAcross", "iso_cam", kQuarter, {1, 1, 0}, {-kThird, kThird, 2 * kThird}},
    {"NamesAreExact", "FRT_CAM", kQuarter, {5, 1, 0}, {5, 0, 1}},
    {"NegativeAnglesDoNot", "top_cam", kQuarterBack, {1, 0, 5}, {1, 0, 5}},
};
INSTANTIATE_TEST_SUITE_P(Cameras, CTrackBallOrbitTest, testing::ValuesIn(kOrbits), kRowName);

// --- numbers that make no sense ---

struct COddCase {
    const char* name;
    float size;
    CVec3 view;
    CViewMatrices matrices;
};

class CTrackBallOddTest : public testing::TestWithParam<COddCase> {};

TEST_P(CTrackBallOddTest, StaysARotation) {
    const COddCase& c = GetParam();
    CTrackBallMotion ball(true);
    std::mt19937 random(7);
    const auto pixel = [&random] { return static_cast<int>(random() % 1000) - 300; };
    for (int drag = 0; drag < 300; ++drag) {
        ball.SetBall(c.size, c.view, c.matrices);
        ball.Begin(pixel(), pixel());
        for (int i = 0; i < 10; ++i) (void)ball.Drag(pixel(), pixel());
        ball.Release(pixel(), pixel());
        ASSERT_LT(Distortion(ball), 1e-6) << "after drag " << drag;
    }
    float eye[3] = {1, 2, 3};
    ball.OrbitEye("top_cam", eye);
    EXPECT_TRUE(std::isfinite(eye[0] + eye[1] + eye[2]));
}

CViewMatrices FromAhead(double distance, double scale = 1, std::array<int, 4> viewport = {0, 0, 400, 300}) {
    CViewMatrices m = view_matrices::Looking({0, -distance, 0}, {0, 0, 1}, distance > 1 ? 0.5 : 0.01);
    m.modelView.m[0] = m.modelView.m[5] = m.modelView.m[10] = scale;
    m.viewport = viewport;
    return m;
}

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

const COddCase kOdd[] = {
    {"AnHourOfDragging", 2, {0, -2.7f, 0}, FromAhead(2.7)},
    {"EyeInside", 2, {0, -0.5f, 0}, FromAhead(0.5)},
    {"EyeAtTheCentre", 2, {0, 0, 0}, FromAhead(1e-9)},
    {"BallBehindTheEye", 2, {0, 3, 0}, FromAhead(2.7)},
    {"NoMatrices", 2, {0, -2.7f, 0}, {}},
    {"FlatScene", 2, {0, -2.7f, 0}, FromAhead(2.7, 0)},
    {"NanMatrices", 2, {0, -2.7f, 0}, FromAhead(2.7, static_cast<double>(kNan))},
    {"NoViewport", 2, {0, -2.7f, 0}, FromAhead(2.7, 1, {})},
    {"NanRadius", kNan, {0, -2.7f, 0}, FromAhead(2.7)},
};
INSTANTIATE_TEST_SUITE_P(Inputs, CTrackBallOddTest, testing::ValuesIn(kOdd), kRowName);

TEST(CTrackBallMotionTest, FromInsideTheWallAheadFollowsTheMouse) {
    const CVec3d eye{0, -0.5, 0};
    const CViewMatrices m = view_matrices::Looking(eye, {0, 0, 1}, 0.01);
    CTrackBallMotion ball(true);
    ball.SetBall(2, Floats(eye), m);
    ball.Begin(200, 150);
    EXPECT_TRUE(ball.Drag(260, 150));
    EXPECT_NEAR(view_matrices::Project(m, Turned(ball, {0, 1, 0})).x, 260, 0.05);
}

}  // namespace
