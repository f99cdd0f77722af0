// SPDX-License-Identifier: MIT
// What gestures do to the camera: where a point of the model is seen afterwards.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>
#include <string>

#include "camera/CSeenOptions.h"
#include "camera/CSeenView.h"
#include "camera/point_under.h"
#include "model/prepare/CPreparedScene.h"
#include "row_name.h"
#include "view/gesture_steps.h"

namespace {

/** A sheet in the plane x = 5, 20 wide and high, seen from both sides; and one in x = 2 that shows its back to
 * the right and its front to the left. */
CPreparedScene Sheets() {
    CPreparedScene scene;
    scene.materials.resize(2);
    scene.materials[0].twoSided = true;
    for (const float x : {5.0f, 2.0f}) {
        CPreparedMesh mesh;
        for (const auto& [y, z] : {std::pair{-10.f, -10.f}, {-10.f, 10.f}, {10.f, 10.f}, {10.f, -10.f}}) {
            mesh.vertices.push_back({{x, y, z}, {}});
            mesh.bounds.Add(CVec3{x, y, z});
        }
        mesh.indices16 = {0, 1, 2, 0, 2, 3};  // counter-clockwise as seen from the left
        mesh.batches = {{x == 5 ? 0u : 1u, 0, 6}};
        CPreparedNode node;
        node.mesh = static_cast<int>(scene.meshes.size());
        node.worldBounds = mesh.bounds;
        scene.meshes.push_back(mesh);
        scene.nodes.push_back(node);
    }
    return scene;
}

/** The gestures over a seen view of 400 x 300 pixels, as the window's view carries them out. */
class CSeenTarget final : public CGestureTarget {
  public:
    explicit CSeenTarget(const CSeenOptions& options, ECameraPreset preset) {
        seen.camera.SetModel({{1, 0, 0}, 10});
        seen.camera.SetViewSize(400, 300);
        seen.camera.SetPreset(preset);
        options.Apply(seen);
    }
    int ViewHeight() const override { return 300; }
    const char* PickNode(int, int) override { return nullptr; }
    void ZoomModel(int step) override { seen.camera.Zoom(step); }
    void ZoomModel(const C2DRect& box) override { (void)seen.ZoomTo(box); }
    void ZoomModelAt(int step, int x, int y) override { seen.ZoomAt(step, x, y); }
    void PanModel(int dx, int dy) override { seen.Pan(dx, dy); }
    void TurnModel(double rightDeg, double upDeg) override {
        const CMatrix4d v = CMatrix4d::From(seen.ViewMatrix());
        constexpr double kDegree = std::numbers::pi / 180;
        seen.turn = CRotation::About({v.m[1], v.m[5], v.m[9]}, rightDeg * kDegree) *
                    CRotation::About({v.m[0], v.m[4], v.m[8]}, -upDeg * kDegree) * seen.turn;
    }
    bool CenterModelAt(int x, int y) override {
        const auto point = PointUnder(scene, seen, x, y);
        if (point) seen.CenterOn(*point);
        return point.has_value();
    }
    void DeleteNode(const char*) override {}
    void StartLongPress(int) override {}
    void StopLongPress() override {}
    void ShowCursor(EToolCursor) override {}
    void TellLeftButtonDown() override {}
    void BeginWork() override {}
    void EndWork() override {}

    /** Pixels from the top left, and the depth. */
    [[nodiscard]] CVec3 SeenAt(CVec3 point) const {
        const CVec3 eye = (seen.ViewMatrix() * seen.ModelMatrix()).TransformPoint(point);
        const CMat4 projection = seen.ProjectionMatrix({1, 2});
        return {200 * (1 + projection.m[0] * eye.x / -eye.z), 150 * (1 - projection.m[5] * eye.y / -eye.z),
                -eye.z};
    }

    CPreparedScene scene = Sheets();
    CSeenView seen;
};

struct CCameraCase {
    const char* name;
    ECameraPreset preset;
    CSeenOptions before;
    CVec3 point;
    const char* steps;  ///< a word and x y each; "@" stands for where the point is seen at first
    /** Where the point is seen afterwards: pixels from where it was, or the middle of the view. */
    float dx, dy;
    bool isInTheMiddle = false;
    /** The eye's distance from the look-at point, as a share of that before; kSameDepth: the point's own
     * distance stays. */
    double nearer = 1;
};

constexpr double kSameDepth = 0;

class GestureCamerasTest : public testing::TestWithParam<CCameraCase> {};

TEST_P(GestureCamerasTest, ShowThePointWhereTheTableSays) {
    const CCameraCase& c = GetParam();
    CSeenTarget target(c.before, c.preset);
    CTrackBallMotion ball(true);
    CViewGestures gestures(target, ball, nullptr);
    const CVec3 before = target.SeenAt(c.point);
    const double distance = target.seen.camera.Distance();
    std::istringstream steps(c.steps);
    for (std::string what, x, y; steps >> what >> x >> y;) {
        const bool isAtPoint = x == "@";
        gesture_steps::Do(gestures, what, isAtPoint ? static_cast<int>(std::lround(before.x)) : std::stoi(x),
                          isAtPoint ? static_cast<int>(std::lround(before.y)) : std::stoi(y));
    }
    const CVec3 after = target.SeenAt(c.point);
    EXPECT_NEAR(after.x, c.isInTheMiddle ? 200 : before.x + c.dx, 1.2f);
    EXPECT_NEAR(after.y, c.isInTheMiddle ? 150 : before.y + c.dy, 1.2f);
    if (c.nearer > 0)
        EXPECT_NEAR(target.seen.camera.Distance() / distance, c.nearer, 1e-3);
    else
        EXPECT_NEAR(after.z, before.z, 0.05f);
}

constexpr ECameraPreset kLeft = ECameraPreset::Left, kRight = ECameraPreset::Right, kTop = ECameraPreset::Top;
const CSeenOptions kPlain, kTurned{.anglesDeg = {0, 0, 15}, .turnDeg = {20, 0, 30}},
    kPivoted{.turnDeg = {0, 10, 0}, .pivot = {3, 2, 1}}, kZoomed{.zoom = -300},
    kOrbited{.orbitDeg = 20, .scale = {0.8, 1.2, 1}};
constexpr CVec3 kMiddle{1, 0, 0}, kOnSheet{5, 4, 3}, kOnHiddenSide{2, 3, -2};

const CCameraCase kCameras[] = {
    {"PanMovesTheMiddle", kLeft, kPlain, kMiddle, "pan-down 9 9 move-up 69 -21 pan-up 0 0", 60, -30},
    {"PanOfATurnedModel", kTop, kTurned, kMiddle, "pan-down 0 0 move-up 10 10 move-up -40 80 pan-up 0 0", -40,
     80},
    {"PanUnderAnOrbitedEye", kRight, kOrbited, kMiddle, "pan-down 0 0 move-up 50 20 pan-up 0 0", 50, 20},
    {"PannedModelTurnsWhereItIs", kLeft, kTurned, kMiddle,
     "pan-down 0 0 move-up 90 40 pan-up 0 0 right 0 0 up-key 0 0 up-key 0 0", 90, 40},
    {"WheelToThePointer", kRight, kPlain, kOnSheet, "alt-wheel @ @ alt-wheel @ @", 0, 0, false, 0.8187},
    {"WheelToThePointerFromNear", kRight, kZoomed, kOnSheet, "alt-wheel @ @", 0, 0, false, 0.9048},
    {"WheelFromThePointer", kTop, kTurned, kOnSheet, "alt-wheel-back @ @", 0, 0, false, 1.1052},
    {"FingersToThePointer", kLeft, kOrbited, kOnSheet, "pinch-double @ @", 0, 0, false, 0.5016},
    {"DoubleClick", kRight, kPlain, kOnSheet, "double @ @", 0, 0, true, kSameDepth},
    {"DoubleClickThroughASideThatIsNotShown", kRight, kTurned, kOnSheet, "double @ @", 0, 0, true,
     kSameDepth},
    {"DoubleClickOnTheSheetInFront", kLeft, kTurned, kOnHiddenSide, "double @ @", 0, 0, true, kSameDepth},
    {"TurnsAboutWhatWasClicked", kRight, kTurned, kOnSheet,
     "double @ @ right 0 0 right 0 0 up-key 0 0 right 0 0", 0, 0, true, kSameDepth},
    {"DoubleClickWithAPivot", kRight, kPivoted, kOnSheet, "double @ @", 0, 0, true, kSameDepth},
    {"DoubleClickBesideTheModel", kRight, kPlain, kMiddle, "double 3 3", 0, 0},
    {"BoxOfATurnedModel", kRight, kTurned, kMiddle, "control-down 150 100 move 250 200 up 0 0", 0, 0, true},
    {"PlusAndMinus", kRight, kPlain, kMiddle, "plus 0 0 plus 0 0 minus 0 0", 0, 0, false, 0.9048},
    {"FinePlus", kRight, kPlain, kMiddle, "plus 1 0", 0, 0, false, 0.9802},
    // The front of the ball goes with the arrow: 10 degrees at 9 of 10 radii, seen from 26.
    {"RightArrow", kRight, kPlain, {10, 0, 0}, "right 0 0", 33, 0},
    {"KeysMoveTheMiddle", kRight, kTurned, kMiddle, "pan-right 0 0 pan-right 1 0 pan-up-key 0 0", 30, -25},
    {"FineUpArrow", kRight, kPlain, {10, 0, 0}, "up-key 1 0", 0, -6.7f},
};
INSTANTIATE_TEST_SUITE_P(Gestures, GestureCamerasTest, testing::ValuesIn(kCameras), kRowName);

}  // namespace
