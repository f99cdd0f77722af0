// SPDX-License-Identifier: MIT
#include "camera/CSeenView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/math/rotation_of_angles.h"
#include "camera/CSeenOptions.h"
#include "model/prepare/CPreparedScene.h"
#include "row_name.h"

namespace {

constexpr CSphere kModel{{30, -20, 10}, 4};

struct CSeenCase {
    const char* name;
    ECameraPreset preset;
    CSeenOptions options;
};

CSeenView Seen(const CSeenCase& c) {
    CSeenView seen;
    seen.camera.SetModel(kModel);
    seen.camera.SetPreset(c.preset);
    c.options.Apply(seen);
    return seen;
}

class CSeenViewTest : public testing::TestWithParam<CSeenCase> {};

// The order in which a frame is drawn: pivot and look-at point, scale, trackball, and back again.
TEST_P(CSeenViewTest, PlacesTheModelStepByStep) {
    const CSeenView seen = Seen(GetParam());
    const CSeenOptions& o = GetParam().options;
    const auto f = [](CVec3d v) {
        return CVec3{static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
    };
    const CVec3 about = f(o.pivot) + kModel.center;
    const CMat4 ball = CMat4::Translation(about) * CMat4::Scale(f(o.scale));
    const CMat4 expected = ball * RotationOfAngles(o.turnDeg.x, o.turnDeg.y, o.turnDeg.z) *
                           CMat4::Translation(-about) * CMat4::Translation(kModel.center) *
                           RotationOfAngles(o.anglesDeg.x, o.anglesDeg.y, o.anglesDeg.z) *
                           CMat4::Translation(-kModel.center);
    EXPECT_EQ(seen.BallMatrix(), ball);
    for (const CVec3 point : {CVec3{}, CVec3{31, -18, 10}, CVec3{-5, 40, 7}}) {
        EXPECT_LT(Length(seen.ModelMatrix().TransformPoint(point) - expected.TransformPoint(point)), 1e-3f);
    }
}

TEST_P(CSeenViewTest, LooksAtItsPointFromTheOrbitedEye) {
    const CSeenView seen = Seen(GetParam());
    const CMat4 view = seen.ViewMatrix();
    EXPECT_TRUE(view.IsFinite());
    const float distance = Length(seen.camera.Eye() - kModel.center);
    EXPECT_NEAR(Length(seen.Eye() - kModel.center), distance, 1e-3f);
    EXPECT_LT(Length(view.TransformPoint(seen.Eye())), 1e-3f);
    EXPECT_LT(Length(view.TransformPoint(kModel.center) - CVec3{0, 0, -distance}), 1e-3f);
}

// Of what stands before the eye nothing is cut off, and the near plane stays before it.
TEST_P(CSeenViewTest, DepthRangeHoldsWhatWasPlaced) {
    const CSeenView seen = Seen(GetParam());
    const CSphere aside{kModel.center + CVec3{9, 0, 0}, 1};
    const CDepthRange range = seen.DepthRange(kModel, std::span(&aside, 1));
    EXPECT_GT(range.nearPlane, 0);
    const CMat4 toEye = seen.ViewMatrix() * seen.ModelMatrix();
    for (const CSphere& sphere : {kModel, aside}) {
        for (const CVec3 way : {CVec3{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}}) {
            const float depth = -toEye.TransformPoint(sphere.center + way * sphere.radius).z;
            EXPECT_LE(depth, range.farPlane);
            EXPECT_GE(std::max(depth, range.farPlane / 3000), range.nearPlane);
        }
    }
}

const CSeenCase kSeen[] = {
    {"Plain", ECameraPreset::Iso, {}},
    {"Angles", ECameraPreset::Top, {.anglesDeg = {20, 10, 130}}},
    {"Turned", ECameraPreset::Left, {.anglesDeg = {0, 0, 40}, .turnDeg = {10, -50, 200}}},
    {"Pivot", ECameraPreset::Front, {.turnDeg = {0, 90, 0}, .pivot = {7, -20, 3}}},
    {"Shrunk", ECameraPreset::Front, {.turnDeg = {30, 0, 0}, .pivot = {1, 2, 3}, .scale = {0.1, 0.1, 0.1}}},
    {"Stretched", ECameraPreset::Right, {.turnDeg = {0, 0, 25}, .scale = {1, 9, -2}}},
    {"Orbit", ECameraPreset::Back, {.orbitDeg = 130, .pivot = {0, 0, 9}}},
    {"OrbitAlongUp", ECameraPreset::Back, {.orbitDeg = 270}},
    {"OrbitBackwards", ECameraPreset::Back, {.orbitDeg = -130}},
};
INSTANTIATE_TEST_SUITE_P(Views, CSeenViewTest, testing::ValuesIn(kSeen), kRowName);

struct CLensCase {
    const char* name;
    CSeenOptions zoom;
    bool fileCamera = false;
};
class CCameraLensTest : public testing::TestWithParam<CLensCase> {};

// What is written for another program must follow a picture's shape as the view does.
TEST_P(CCameraLensTest, TellsWhatTheCameraDoesInAnyShape) {
    CSeenView seen;
    CViewCamera& camera = seen.camera;
    camera.SetModel(kModel);
    camera.SetViewSize(640, 480);
    camera.SetPreset(ECameraPreset::Front);
    if (GetParam().fileCamera) camera.SetFileCamera({.position = {0, -30, 5}, .target = {1, 2, 3}});
    GetParam().zoom.Apply(seen);
    for (const double aspect : {0.3, 1.0, 2.5}) {
        camera.SetViewSize(1000 * aspect, 1000);
        const CCameraLens lens = camera.Lens();
        EXPECT_NEAR(static_cast<double>(camera.FovYDeg()),
                    2 * std::atan(std::max(lens.tanY, lens.tanX / aspect)) * 180 / std::numbers::pi, 1e-3);
        const double t = lens.tanY * std::min(1.0, aspect);
        const double distance =
            lens.fittedRadius > 0 ? lens.zoom * lens.fittedRadius * std::sqrt(1 + t * t) / t : lens.distance;
        EXPECT_NEAR(static_cast<double>(Length(camera.Eye() - camera.Target())), distance, 1e-4 * distance);
    }
}
const CLensCase kLenses[] = {{"Preset", {}},
                             {"Wheel", {.zoom = -60}},
                             {"ZoomBox", {.zoomBox = C2DRect(100, 50, 180, 300), .zoom = 20}},
                             {"FileCamera", {.zoom = -20}, true}};
INSTANTIATE_TEST_SUITE_P(Cameras, CCameraLensTest, testing::ValuesIn(kLenses), kRowName);

TEST(CSeenOptionsTest, TakesWholeNumbersOfTheRightCountAlone) {
    for (const auto& [name, value, good] : {std::tuple{"turn", "1,-2.5,3e1", true},
                                            {"turn", "1,2", false},
                                            {"turn", "1,2,3,4", false},
                                            {"pivot", "1,2,x", false},
                                            {"scale", "1,nan,1", false},
                                            {"zoom-box", "0,0,5,5", true},
                                            {"zoom-box", "0,0,5", false},
                                            {"zoom", "-20", true},
                                            {"zoom", "1e300", false},
                                            {"orbit", "", false}}) {
        EXPECT_EQ(!CSeenOptions().Set(name, value), good) << name << ' ' << value;
    }
}

}  // namespace
