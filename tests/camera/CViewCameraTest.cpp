// SPDX-License-Identifier: MIT
#include "camera/CViewCamera.h"

#include <gtest/gtest.h>
#include <lib3ds/matrix.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <tuple>
#include <vector>

#include "model/prepare/CPreparedScene.h"
#include "row_name.h"

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr std::array kPresets{ECameraPreset::Top,   ECameraPreset::Left, ECameraPreset::Right,
                              ECameraPreset::Front, ECameraPreset::Back, ECameraPreset::Iso};

/** A point as the camera draws it: x and y from -1 to 1, z its depth along the line of sight. */
CVec3 OnScreen(const CViewCamera& camera, CVec3 p) {
    const CVec3 eye = camera.ViewMatrix().TransformPoint(p);
    const CMat4 projection = camera.ProjectionMatrix({1, 2});
    return {projection.m[0] * eye.x / -eye.z, projection.m[5] * eye.y / -eye.z, -eye.z};
}

/** Points all over a sphere. */
std::vector<CVec3> PointsOf(const CSphere& sphere) {
    std::vector<CVec3> points;
    for (int i = 0; i < 500; ++i) {
        const float z = 1 - 2 * (static_cast<float>(i) + 0.5f) / 500;
        const float angle = 2.399963f * static_cast<float>(i), r = std::sqrt(1 - z * z);
        points.push_back(sphere.center + CVec3{r * std::cos(angle), r * std::sin(angle), z} * sphere.radius);
    }
    return points;
}

/** Where the view must go to show a point that was at (x, y) pixels. */
C2DRect Around(double x, double y, double width, double height) {
    return {x - width / 2, y - height / 2, x + width / 2, y + height / 2};
}

CPreparedCamera FileCamera(CVec3 position, CVec3 target, float rollDeg = 0, float fovDeg = 45) {
    return {.name = "Camera01", .position = position, .target = target, .rollDeg = rollDeg, .fovDeg = fovDeg};
}

struct CSceneCase {
    const char* name;
    CSphere sphere;
    double width = 640, height = 480;
};

class CViewCameraFitTest : public testing::TestWithParam<CSceneCase> {};

TEST_P(CViewCameraFitTest, WholeSphereTouchesTheNarrowerSide) {
    const CSceneCase& c = GetParam();
    CViewCamera camera;
    camera.SetModel(c.sphere);
    camera.SetViewSize(c.width, c.height);
    for (const ECameraPreset preset : kPresets) {
        camera.SetPreset(preset);
        const CDepthRange range = camera.DepthRange(c.sphere);
        EXPECT_GT(range.nearPlane, 0);
        EXPECT_LT(range.farPlane / range.nearPlane, 500);
        float widest = 0;
        for (const CVec3 point : PointsOf(c.sphere)) {
            const CVec3 seen = OnScreen(camera, point);
            widest = std::max({widest, std::abs(seen.x), std::abs(seen.y)});
            EXPECT_GT(seen.z, range.nearPlane);
            EXPECT_LT(seen.z, range.farPlane);
        }
        EXPECT_LE(widest, 1.001f) << NameOfPreset(preset);
        EXPECT_GE(widest, 0.97f) << NameOfPreset(preset);
        EXPECT_FLOAT_EQ(camera.FovYDeg(), 45);
    }
}

const CSceneCase kFits[] = {{"Wide", {{1, 2, 3}, 5}, 800, 600},
                            {"Tall", {{1, 2, 3}, 5}, 300, 900},
                            {"Huge", {{2e5f, 0, -1e5f}, 1e6f}},
                            {"TinyAside", {{0.01f, 0, 0}, 1e-4f}}};
INSTANTIATE_TEST_SUITE_P(Scenes, CViewCameraFitTest, testing::ValuesIn(kFits), kRowName);

class CViewCameraHostileTest : public testing::TestWithParam<CSceneCase> {};

TEST_P(CViewCameraHostileTest, AnswersStayUsable) {
    CViewCamera camera;
    camera.SetModel(GetParam().sphere);
    camera.SetViewSize(GetParam().width, GetParam().height);
    using CLimits = std::numeric_limits<int>;
    for (const ECameraPreset preset : kPresets) {
        camera.SetPreset(preset);
        for (const int step : {0, -20, 20, CLimits::min(), CLimits::max()}) {
            camera.Zoom(step);
            EXPECT_TRUE(IsFinite(camera.Eye()));
            EXPECT_GT(Length(camera.Eye() - camera.Target()), 0);
            EXPECT_TRUE(camera.ViewMatrix().IsFinite());
            const CDepthRange range = camera.DepthRange(GetParam().sphere);
            EXPECT_GT(range.nearPlane, 0);
            EXPECT_GT(range.farPlane, range.nearPlane);
            EXPECT_TRUE(camera.ProjectionMatrix(range).IsFinite());
        }
    }
}

const CSceneCase kHostile[] = {
    {"Point", {{3, 3, 3}, 0}}, {"NotANumber", {{kNaN, 0, 0}, kNaN}}, {"FarPoint", {{1e7f, 0, 0}, 1e-3f}},
    {"NoView", {{}, 1}, 0, 0}, {"Line", {{}, 1}, 1, 4000},
};
INSTANTIATE_TEST_SUITE_P(Scenes, CViewCameraHostileTest, testing::ValuesIn(kHostile), kRowName);

TEST(CViewCameraTest, PresetsLookFromTheirSides) {
    CViewCamera camera;
    camera.SetModel({{10, 20, 30}, 2});
    for (const auto& [word, from, up] : {std::tuple{"top", CVec3{0, 0, 1}, CVec3{0, 1, 0}},
                                         {"left", {-1, 0, 0}, {0, 0, 1}},
                                         {"right", {1, 0, 0}, {0, 0, 1}},
                                         {"front", {0, -1, 0}, {0, 0, 1}},
                                         {"bck_cam", {0, 1, 0}, {0, 0, 1}},
                                         {"iso_cam", {1, -1, 1}, {0, 0, 1}}}) {
        ECameraPreset preset{};
        ASSERT_TRUE(PresetOfName(word, preset));
        camera.SetPreset(preset);
        EXPECT_LT(Length(Normalized(camera.Eye() - camera.Target()) - Normalized(from)), 1e-5f);
        EXPECT_EQ(camera.Up(), up) << word;
        EXPECT_EQ(camera.Target(), (CVec3{10, 20, 30}));
    }
    ECameraPreset preset{};
    EXPECT_FALSE(PresetOfName("Camera01", preset));
}

TEST(CViewCameraTest, StepsCancelAndNeverReachTheTargetNorRunAway) {
    CViewCamera camera;
    camera.SetModel({{}, 7});
    camera.SetPreset(ECameraPreset::Iso);
    const auto steps = [&](int count, int step) {
        for (int i = 0; i < count; ++i) camera.Zoom(step);
        return Length(camera.Eye());
    };
    const float start = Length(camera.Eye());
    EXPECT_LT(steps(10, -20), start * 0.5f);
    EXPECT_NEAR(steps(10, 20), start, start * 1e-4f);
    EXPECT_GT(steps(2000, -20), 7 * 1e-4f);
    EXPECT_GT(Dot(camera.Eye(), {1, -1, 1}), 0) << "passed through the target";
    EXPECT_LT(steps(2000, 20), 7 * 200);
    // A camera of the file that is farther away than that is not pulled in.
    camera.SetFileCamera(FileCamera({0, -50000, 0}, {}));
    EXPECT_NEAR(steps(1, 20), 50000, 10);
    EXPECT_NEAR(steps(1, -20), 50000 * std::exp(-0.1f), 10);
}

struct CBoxCase {
    const char* name;
    double x, y, width, height;
};

class CViewCameraBoxTest : public testing::TestWithParam<CBoxCase> {};

TEST_P(CViewCameraBoxTest, BoxFillsTheViewFromTheSamePlace) {
    const CBoxCase& box = GetParam();
    for (const ECameraPreset preset : kPresets) {
        CViewCamera camera;
        camera.SetModel({{1, 2, 3}, 4});
        camera.SetViewSize(800, 600);
        camera.SetPreset(preset);
        const CViewCamera before = camera;
        ASSERT_TRUE(camera.Zoom(Around(box.x, box.y, box.width, box.height)));
        EXPECT_LT(Length(camera.Eye() - before.Eye()), 1e-4f);
        // Rays through the box's corners and middle, in scene coordinates, and where they are seen now.
        const auto seenNow = [&](double x, double y) {
            const CMat4 back = before.ViewMatrix().AffineInverse();
            const CMat4 projection = before.ProjectionMatrix({1, 2});
            const CVec3 ray{static_cast<float>(2 * x / 800 - 1) / projection.m[0],
                            static_cast<float>(1 - 2 * y / 600) / projection.m[5], -1};
            return OnScreen(camera, back.TransformPoint(ray * 10));
        };
        const CVec3 middle = seenNow(box.x, box.y);
        EXPECT_LT(std::hypot(middle.x, middle.y), 1e-3f);
        EXPECT_NEAR(seenNow(box.x, box.y - box.height / 4).x, 0, 1e-3f) << "the picture has rolled";
        float reach = 0;
        for (const auto& [sx, sy] : {std::pair{-0.5, -0.5}, {-0.5, 0.5}, {0.5, -0.5}, {0.5, 0.5}}) {
            const CVec3 corner = seenNow(box.x + sx * box.width, box.y + sy * box.height);
            reach = std::max({reach, std::abs(corner.x), std::abs(corner.y)});
        }
        EXPECT_NEAR(reach, 1, 2e-3f) << NameOfPreset(preset);
    }
}

const CBoxCase kBoxes[] = {
    {"Corner", 700, 80, 180, 120}, {"Flat", 300, 400, 400, 40}, {"Upright", 200, 300, 30, 300}};
INSTANTIATE_TEST_SUITE_P(Boxes, CViewCameraBoxTest, testing::ValuesIn(kBoxes), kRowName);

TEST(CViewCameraTest, BoxesWithoutAreaOrOutsideChangeNothing) {
    CViewCamera camera;
    camera.SetViewSize(800, 600);
    const CVec3 eye = camera.Eye();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const C2DRect& rect :
         {C2DRect(10, 10, 300, 10), C2DRect(900, 10, 1000, 50), C2DRect(nan, 0, 10, 10)}) {
        EXPECT_FALSE(camera.Zoom(rect));
        EXPECT_EQ(camera.Eye(), eye);
        EXPECT_FLOAT_EQ(camera.FovYDeg(), 45);
    }
}

TEST(CViewCameraTest, TinyBoxesAreLimitedAndTheWheelLeadsBackOut) {
    CViewCamera camera;
    camera.SetModel({{}, 1});
    camera.SetViewSize(800, 600);
    camera.SetPreset(ECameraPreset::Front);
    ASSERT_TRUE(camera.Zoom(Around(400, 300, 1, 1)));
    EXPECT_NEAR(std::tan(camera.FovYDeg() * std::numbers::pi_v<float> / 360), 0.41421f / 20, 1e-4f);
    for (int i = 0; i < 10; ++i) ASSERT_TRUE(camera.Zoom(Around(300, 200, 2, 2)));
    EXPECT_GT(camera.FovYDeg(), 0.01f);
    for (int i = 0; i < 100; ++i) camera.Zoom(20);
    for (const CVec3 side : {CVec3{1, 0, 0}, {-1, 0, 0}, {0, 0, 1}, {0, 0, -1}}) {
        const CVec3 seen = OnScreen(camera, side);
        EXPECT_LT(std::max(std::abs(seen.x), std::abs(seen.y)), 1);
    }
    camera.SetPreset(ECameraPreset::Front);
    EXPECT_FLOAT_EQ(camera.FovYDeg(), 45);
}

struct CPoseCase {
    const char* name;
    CVec3 position, target;
    float rollDeg = 0;
};

class CViewCameraFileTest : public testing::TestWithParam<CPoseCase> {};

TEST_P(CViewCameraFileTest, SeesAsLib3dsDoes) {
    const CPoseCase& c = GetParam();
    CViewCamera camera;
    camera.SetFileCamera(FileCamera(c.position, c.target, c.rollDeg));
    Lib3dsMatrix matrix;  // looks along its y, up is z
    Lib3dsVector position{c.position.x, c.position.y, c.position.z},
        target{c.target.x, c.target.y, c.target.z};
    lib3ds_matrix_camera(matrix, position, target, c.rollDeg * std::numbers::pi_v<float> / 180);
    const CMat4 expected = CMat4::FromLib3ds(matrix);
    for (const CVec3 point : PointsOf({{1, 2, 3}, 10})) {
        const CVec3 theirs = expected.TransformPoint(point), ours = camera.ViewMatrix().TransformPoint(point);
        EXPECT_LT(Length(ours - CVec3{theirs.x, theirs.z, -theirs.y}), 1e-4f);
    }
}

const CPoseCase kPoses[] = {{"Rolled", {5, -10, 3}, {-2, 1, 4}, 30},
                            {"Down", {1, 2, 10}, {1, 2, 0}},
                            {"UpRolled", {1, 2, -10}, {1, 2, 0}, -75},
                            {"NearlyDown", {1, 2, 10}, {1.001f, 2, 0}}};
INSTANTIATE_TEST_SUITE_P(Poses, CViewCameraFileTest, testing::ValuesIn(kPoses), kRowName);

TEST(CViewCameraTest, FollowsItsOwnCameraAndKeepsTheZoom) {
    CViewCamera camera;
    camera.SetViewSize(1920, 1080);
    camera.SetFileCamera(FileCamera({0, -10, 0}, {}, 0, 90));
    EXPECT_NEAR(camera.FovYDeg(), 73.7398f, 1e-3f);  // 2 atan(3/4), as for a picture of 4 to 3
    camera.Zoom(-20);
    camera.Follow(FileCamera({0, 0, 20}, {}));
    CPreparedCamera other = FileCamera({5, 5, 5}, {});
    other.name = "Camera02";
    camera.Follow(other);
    EXPECT_NEAR(camera.Eye().z, 20 * std::exp(-0.1f), 1e-3f);
}

TEST(CViewCameraTest, OddCamerasOfTheFileAreUsable) {
    CViewCamera camera;
    camera.SetModel({{}, 100});
    camera.SetFileCamera(FileCamera({0, 0, 0}, {0, 50, 0}));  // inside
    const CDepthRange range = camera.DepthRange({{}, 100});
    EXPECT_GT(range.nearPlane, 0.01f);
    EXPECT_LT(range.nearPlane, 0.1f);
    EXPECT_GE(range.farPlane, 100);
    camera.SetFileCamera(FileCamera({0, 500, 0}, {0, 600, 0}));  // looks away from all of it
    EXPECT_GT(camera.DepthRange({{}, 1}).nearPlane, 0);
    camera.SetPreset(ECameraPreset::Front);  // and something far off cuts nothing of the model away
    EXPECT_LT(camera.DepthRange({{5e8f, 0, 0}, 5e8f}).nearPlane, Length(camera.Eye()) - 99);
    camera.SetFileCamera(FileCamera({1, 2, 3}, {1, 2, 3}));  // looks nowhere
    EXPECT_EQ(camera.Eye(), (CVec3{1, 2, 3}));
    EXPECT_GT(Length(camera.Target() - camera.Eye()), 0.1f);
    EXPECT_TRUE(camera.ViewMatrix().IsFinite());
}

}  // namespace
