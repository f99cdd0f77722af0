// SPDX-License-Identifier: MIT
#include "engine/C3dsDisplayWrap.h"

#include <lib3ds/file.h>

#include <array>
#include <cmath>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "engine/CEngineTest.h"
#include "engine/gl/CGlCapabilities.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "picture/image_writer.h"

namespace {

constexpr int kWidth = 200, kHeight = 150;
constexpr CColor kBackground{0, 0, 255};

/** An overlay of the caller's. */
void DrawWhiteCorner() {
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 5, 5);
    glClearColor(1, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
}

class C3dsDisplayWrapGLTest : public CEngineTest<kWidth, kHeight> {
  protected:
    /** What a viewer does on a click: all names under the pixel. */
    std::set<std::string> Pick(int x, int y) {
        std::array<GLuint, 512> hits{};
        glSelectBuffer(static_cast<GLsizei>(hits.size()), hits.data());
        (void)glRenderMode(GL_SELECT);
        glInitNames();
        glPushName(0xFFFFFFFFu);
        if (m_engine.InitDrawings(GL_SELECT, x, y)) {
            LookThroughCamera();
            m_engine.DrawModel(GL_SELECT);
        }
        const int count = glRenderMode(GL_RENDER);
        std::set<std::string> names;
        for (std::size_t i = 3; i < static_cast<std::size_t>(count) * 4; i += 4)
            names.insert(m_engine.GetNodeNameById(static_cast<int>(hits[i])));
        return names;
    }
    void LookThroughCamera() {
        glMultMatrixf(m_engine.SeenView().camera.ViewMatrix().m.data());
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
    }
};

TEST_F(C3dsDisplayWrapGLTest, WithoutASceneOnlyTheBackgroundIsDrawn) {
    const auto expectNone = [&] {
        EXPECT_FALSE(m_engine.InitDrawings(GL_RENDER, -1, -1));
        m_engine.DrawModel(GL_RENDER);
        EXPECT_EQ(CountDrawn(Paint()), 0);
        EXPECT_EQ(ColorAt(Paint(), 0, 0), kBackground);
        EXPECT_EQ(m_engine.Get3dsFile(), nullptr);
        EXPECT_FALSE(m_engine.DrawAnimations());
        EXPECT_FALSE(m_engine.DeleteNode("Low"));
        EXPECT_FALSE(m_engine.SaveAs(L"/nowhere/out.3ds"));
    };
    expectNone();
    ASSERT_TRUE(Open(Tower()));
    EXPECT_FALSE(m_engine.OpenModel(L"/no/such/file.3ds"));
    EXPECT_EQ(m_engine.LastError().code, EErrorCode::NotFound);
    expectNone();
    EXPECT_FALSE(m_engine.OpenBufferModel(nullptr, -1, {}));
    EXPECT_FALSE(m_engine.OpenModelStruct(nullptr));
    EXPECT_TRUE(m_engine.OpenModelStruct(lib3ds_file_new()));  // a scene with nothing in it
    EXPECT_EQ(CountDrawn(Paint()), 0);
    m_engine.CloseModel();
    expectNone();
}

TEST_F(C3dsDisplayWrapGLTest, PickAgreesWithThePictureAfterZooming) {
    ASSERT_TRUE(Open(Tower()));
    m_engine.SetFrontCameraModel();
    EXPECT_EQ(Pick(kWidth / 2, 40), std::set<std::string>{"High"});
    EXPECT_EQ(Pick(kWidth / 2, 110), std::set<std::string>{"Low"});
    for (const int id : {-1, 2}) EXPECT_EQ(m_engine.GetNodeNameById(id), nullptr);
    m_engine.ZoomModel(C2DRect(70, 5, 150, 65));
    m_engine.ZoomModel(-20);
    m_engine.UpdateRotAngles(15, 0);
    const CImage image = Paint();
    int asked = 0;
    for (int y = 6; y < kHeight - 6; y += 12) {
        for (int x = 6; x < kWidth - 6; x += 12) {
            const bool drawn = ColorAt(image, x, y) != kBackground;
            bool even = true;
            for (const auto& [dx, dy] : {std::array{-4, 0}, {4, 0}, {0, -4}, {0, 4}})
                even &= (ColorAt(image, x + dx, y + dy) != kBackground) == drawn;
            if (!even) continue;
            EXPECT_EQ(!Pick(x, y).empty(), drawn) << x << ' ' << y;
            asked += drawn;
        }
    }
    EXPECT_GT(asked, 20);
}

TEST_F(C3dsDisplayWrapGLTest, CallersScaleAndShiftAreNotCutOff) {
    ASSERT_TRUE(Open(Scene(Mesh("Square", Points({-1, 0, -1, 1, 0, -1, 1, 0, 1}) + Faces({0, 1, 2})))));
    m_engine.SetFrontCameraModel();
    for (const float forward : {-3.0f, 40.0f}) {  // nearer than the near plane and beyond the far one
        ASSERT_TRUE(m_engine.InitDrawings(GL_RENDER, -1, -1));
        LookThroughCamera();
        glTranslatef(0, forward, 0);
        glScalef(2, 2, 2);
        m_engine.DrawModel(GL_RENDER);
        EXPECT_NE(ColorAt(Context().ReadPixels().Value(), kWidth / 2 + 5, kHeight / 2 + 5), kBackground)
            << forward;
    }
}

TEST_F(C3dsDisplayWrapGLTest, EditsShowInTheNextFrameAndAreSaved) {
    const CTestFolder folder;
    const std::wstring path = file_util_ex::ConvertFromUTF8W(folder / "edited.3ds");
    ASSERT_TRUE(Open(Tower()));
    m_engine.SetFrontCameraModel();
    const auto high = [&] { return ColorAt(Paint(), kWidth / 2, 40); };
    const auto low = [&] { return ColorAt(Paint(), kWidth / 2, 110); };
    (void)Paint();
    ASSERT_TRUE(m_engine.SetNodeMaterialColor("High", nullptr, 1, 0, 0));
    EXPECT_GT(high()[0], 4 * high()[1]);
    EXPECT_LT(low()[0], 2 * low()[1]);
    ASSERT_TRUE(m_engine.SetNodeMaterialTransparency("Low", nullptr, 1));
    EXPECT_EQ(low(), kBackground);
    ASSERT_TRUE(m_engine.MoveNode("High", 0, 0, -6));
    EXPECT_EQ(high(), kBackground);
    ASSERT_TRUE(m_engine.SaveAs(path.c_str()));
    ASSERT_TRUE(m_engine.DeleteNode(m_engine.GetNodeNameById(1)));  // a name of its own, which goes with it
    ASSERT_TRUE(m_engine.DeleteNode("Low"));
    EXPECT_EQ(CountDrawn(Paint()), 0);
    ASSERT_TRUE(m_engine.OpenModel(path.c_str()));
    EXPECT_FLOAT_EQ(m_engine.Prepared()->bounds.max.z, -2);
}

TEST_F(C3dsDisplayWrapGLTest, EditsThatAreTakenBackLeaveThePictureAsItWas) {
    const CTestFolder folder;
    ASSERT_TRUE(image_codec::WritePng(folder / "blue.png", {1, 1, {0, 0, 200, 255}}, false));
    const CBytes texels = Chunk(0x4140, Words({8}) + CBytes(64));
    const CBytes faces = CubeFaces(Chunk(0x4130, Text("Red") + Words({2, 6, 7})));
    ASSERT_TRUE(Open(Scene(Material("Red") + Mesh("Box", CubePoints() + faces + texels) +
                           Mesh("Other", CubePoints(3, 0, 0) + faces + texels))));
    EXPECT_EQ(m_engine.GetMaterialNamesOfNode("Box"), (std::vector<std::string>{"", "Red"}));
    const CImage plain = Paint();
    const float radius = m_engine.GetRadius();
    const std::vector<CEdit> edits{CTextureEdit{{"Box", "Red"}, folder / "blue.png"},
                                   CColorEdit{{"", "Green"}, {1, 0, 0}}, CTransparencyEdit{{"Box", ""}, 0.5f},
                                   CMoveEdit{"Box", {90, 0, 1}}, CDeleteEdit{"Other"}};
    for (int round = 0; round < 2; ++round) {
        const std::vector<CStatus> answers = m_engine.ApplyEdits(edits);
        ASSERT_EQ(answers.size(), edits.size());
        EXPECT_FALSE(answers[1]);
        EXPECT_EQ(m_engine.LastError().where, "Green");
        // Once with a frame between, once without.
        EXPECT_TRUE(round == 1 || Paint().rgba != plain.rgba);
        m_engine.SetIsoCameraModel();
        EXPECT_EQ(m_engine.GetRadius(), radius);
        EXPECT_FALSE(m_engine.TakeBackEdits(5));
        ASSERT_TRUE(m_engine.TakeBackEdits(4));
        EXPECT_EQ(Paint().rgba, plain.rgba);
    }
}

TEST_F(C3dsDisplayWrapGLTest, ValuesThatAreNoNumbersAndNullNamesAreRefused) {
    ASSERT_TRUE(Open(Scene(Material("Red") + Cube("Box"))));
    EXPECT_FALSE(m_engine.SetMaterialColor("Red", 0, INFINITY, 0));
    EXPECT_FALSE(m_engine.SetMaterialTransparency("Red", std::nanf("")));
    EXPECT_FALSE(m_engine.SetNodeMaterialShininess("Box", "Red", std::nanf("")));
    EXPECT_FALSE(m_engine.SetNodeMaterialColor(nullptr, "Red", 1, 0, 0));
    EXPECT_FALSE(m_engine.ReplaceNode("Box", nullptr, nullptr));
    EXPECT_FALSE(m_engine.DeleteNode(nullptr));
    EXPECT_TRUE(m_engine.SetMaterialColor("Red", 1, 0, 0));
}

TEST_F(C3dsDisplayWrapGLTest, AnimationRunsToItsEndAndBeginsAgain) {
    const CBytes moving = Track(0xB020, 2, Key(0, {0, 0, 0}) + Key(3, {9, 0, 0}));
    ASSERT_TRUE(Open(Scene(
        Cube("Box"), Chunk(0xB000, Chunk(0xB008, Dwords({0, 3})) + ObjectNode(0, "Box", 65535, moving)))));
    for (const float frame : {0.0f, 1.0f, 2.0f, 3.0f, 0.0f}) {
        EXPECT_EQ(m_engine.GetFrame(), frame);
        EXPECT_TRUE(m_engine.DrawAnimations());
    }
    for (const float frame : {3.0f, 1e9f, std::nanf("")}) {
        m_engine.SetFrame(frame);
        EXPECT_EQ(m_engine.GetFrame(), 3);
    }
    // An edit keeps the frame that is shown.
    ASSERT_TRUE(m_engine.SetNodeMaterialColor("Box", nullptr, 1, 0, 0));
    EXPECT_NEAR(m_engine.Prepared()->bounds.min.x, 8, 1e-3f);
}

TEST_F(C3dsDisplayWrapGLTest, ChangedShapeIsDrawnAndPicked) {
    const CBytes shapes = Dwords({0}) + Words({0}) + Text("Box") + Dwords({10}) + Words({0}) + Text("Far");
    const CBytes file =
        Scene(Cube("Box") + Mesh("Far", CubePoints(0, 0, -3) + CubeFaces()) +
                  Mesh("Rod", CubePoints(0, 0, -6) + CubeFaces()),
              Keyframer(ObjectNode(0, "Box", 65535, AtPosition(0, 0, 0) + Track(0xB026, 2, shapes)) +
                        ObjectNode(1, "Rod", 65535, AtPosition(0, 0, 0))));
    ASSERT_TRUE(Open(file));
    const CImage before = Paint();
    EXPECT_FALSE(Pick(kWidth / 2, kHeight / 2).contains("Box")) << "between the two";
    m_engine.SetFrame(10);
    const CImage after = Paint();
    EXPECT_NE(after.rgba, before.rgba);
    const CBox box = m_engine.Prepared()->nodes[0].worldBounds;
    EXPECT_NEAR(box.Center().z, -3, 1e-3f);
    // The same as in a scene that was never drawn before it changed.
    ASSERT_TRUE(Open(file));
    m_engine.SetFrame(10);
    EXPECT_EQ(Paint().rgba, after.rgba);
    EXPECT_TRUE(Pick(kWidth / 2, kHeight / 2).contains("Box"));
}

/** Camera and light beside a box. */
CBytes Stage() {
    const CBytes camera = Chunk(0x4000, Text("Cam") + Chunk(0x4700, Floats({-6, -2, 0, 0, 0, 0, 0, 45})));
    const CBytes light = Chunk(
        0x4000, Text("Lamp") + Chunk(0x4600, Floats({1.5f, 1.5f, 0}) + Chunk(0x0010, Floats({1, 1, 1}))));
    return Scene(camera + light + Cube("Box"));
}

TEST_F(C3dsDisplayWrapGLTest, OverlaysAddToThePictureAndLeaveNoStateBehind) {
    ASSERT_TRUE(Open(Stage()));
    const CImage plain = Paint();
    for (bool COverlays::*show :
         {&COverlays::bounds, &COverlays::cameras, &COverlays::lights, &COverlays::axes}) {
        COverlays overlays;
        overlays.*show = true;
        m_engine.SetOverlays(overlays);
        EXPECT_GT(CountDrawn(Paint()), CountDrawn(plain) + 15);
        for (const auto& [what, before] :
             {std::pair{GL_MODELVIEW_STACK_DEPTH, 1}, {GL_MATRIX_MODE, GL_MODELVIEW}}) {
            GLint now = 0;
            glGetIntegerv(static_cast<GLenum>(what), &now);
            EXPECT_EQ(now, before);
        }
        m_engine.SetOverlays({});
        EXPECT_EQ(Paint().rgba, plain.rgba);
    }
}

TEST_F(C3dsDisplayWrapGLTest, EditsThatFollowTheHandShowAsAnyOther) {
    if (!CGlCapabilities::Query(Context().MakeCurrent()).software) GTEST_SKIP() << "hardware draws all anew";
    ASSERT_TRUE(Open(Tower()));
    int step = 0, kept = 0;
    const auto follow = [&](const char* what) {
        for (int i = 0; i < 3; ++i) {
            ASSERT_TRUE(
                m_engine.SetNodeMaterialColor("High", "", 0.03f * static_cast<float>(++step), 0.5f, 0));
            m_engine.SetFollowing(true);
            const CImage followed = Paint();
            kept += m_engine.IsLastFrameWhole() ? 0 : 1;
            m_engine.SetFollowing(false);
            EXPECT_EQ(followed.rgba, Paint().rgba) << what << ", step " << step;
            EXPECT_TRUE(m_engine.IsLastFrameWhole());
        }
    };
    follow("plain");
    m_engine.SetOverlays({.bounds = true, .axes = true});
    follow("overlays");
    m_engine.SetBkColors(1, 1, 0);
    follow("another background");
    m_engine.SetBackgroundImage(std::make_shared<const CImage>(test_scenes::QuarterImage()));
    follow("a picture behind");
    m_engine.SetEmphasis(std::vector<std::string>{"High"});
    follow("the other dimmed");
    m_engine.SetEmphasis({});
    m_engine.UpdateRotAngles(20, 10);
    follow("turned");
    ASSERT_TRUE(m_engine.MoveNode("Low", 1, 1, 0));
    follow("the other moved");
    ASSERT_TRUE(m_engine.TakeBackEdits(2));
    follow("taken back");
    ASSERT_TRUE(m_engine.DeleteNode("Low"));
    follow("the other deleted");
    EXPECT_GT(kept, step / 2);
}

TEST_F(C3dsDisplayWrapGLTest, PicturesShowWhatTheyAreGivenAndLeaveTheWindowAlone) {
    ASSERT_TRUE(Open(Stage()));
    m_engine.SetOverlays({.bounds = true, .lights = true});
    const CImage window = Paint();
    CSeenView seen = m_engine.SeenView();
    seen.camera.SetViewSize(90, 70);
    seen.background = {0, 1, 0};
    seen.scale = {0.5, 0.5, 0.5};
    const auto take = [&](EPictureOf what) {
        auto picture = m_engine.TakePicture(seen, what, DrawWhiteCorner);
        return picture ? std::move(picture).Value() : CImage{};
    };
    const CImage model = take(EPictureOf::Model), all = take(EPictureOf::ModelAndOverlays);
    ASSERT_EQ(model.width, 90);
    ASSERT_EQ(model.height, 70);
    EXPECT_EQ(ColorAt(model, 1, 68), (CColor{0, 255, 0}));
    EXPECT_EQ(ColorAt(all, 1, 68), (CColor{255, 255, 255}));
    EXPECT_GT(CountDrawn(all), CountDrawn(model) + 40);
    seen.scale = {1, 1, 1};
    EXPECT_GT(CountDrawn(take(EPictureOf::Model)), 2 * CountDrawn(model));
    (void)Context().MakeCurrent();
    EXPECT_EQ(Paint().rgba, window.rgba);
}

// A window that multiplies the parts itself, and a picture that is drawn as a whole.
TEST_F(C3dsDisplayWrapGLTest, SeenViewIsDrawnAlikeInOneGoAndInParts) {
    ASSERT_TRUE(Open(Tower()));
    m_engine.UpdateRotAngles(20, 10);
    m_engine.SetPivotOffset({1, 2, 3});
    m_engine.SetPivotOffset({std::nan(""), 0, 0});
    m_engine.SetScale({1, 0.5, 2});
    m_engine.SetTurn(CRotation::About({0, 0, 1}, 1), 0.5);
    m_engine.SetWireframe(true);
    const CImage painted = Paint();
    const CSeenView seen = m_engine.SeenView();
    EXPECT_EQ(seen.pivot.x, 1);
    EXPECT_LT(CountDrawn(painted), 2000) << "more than lines";
    ASSERT_TRUE(m_engine.InitDrawings(GL_RENDER, -1, -1));
    glMultMatrixf(seen.ViewMatrix().m.data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(seen.PlacingMatrix().m.data());
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    m_engine.DrawModel(GL_RENDER);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    EXPECT_EQ(Context().ReadPixels().Value().rgba, painted.rgba);
    m_engine.SetTopCameraModel();
    m_engine.SetSeenView(seen);
    EXPECT_EQ(Paint().rgba, painted.rgba);
    // Another scene is seen as it is.
    ASSERT_TRUE(Open(Tower()));
    EXPECT_EQ(m_engine.SeenView().ModelMatrix(), CMat4{});
}

TEST_F(C3dsDisplayWrapGLTest, CamerasOfTheFileSeeTheModelNotTurned) {
    ASSERT_TRUE(Open(Stage()));
    EXPECT_EQ(m_engine.GetFileCameraNames(), std::vector<std::string>{"Cam"});
    m_engine.UpdateRotAngles(30, 0);
    ASSERT_TRUE(m_engine.SetFileCameraModel("Cam"));
    EXPECT_FALSE(m_engine.SetFileCameraModel("Nobody"));
    EXPECT_EQ(m_engine.GetCameraName(), "Cam");
    EXPECT_FLOAT_EQ(m_engine.GetEyeX(), -6);
    EXPECT_FLOAT_EQ(m_engine.GetRotAngleZ(), 0);
}

TEST_F(C3dsDisplayWrapGLTest, ViewingOnlyDrawsTheSameAndGivesMemoryBack) {
    ASSERT_TRUE(Open(Tower()));
    const CImage whole = Paint();
    m_engine.CloseModel();
    m_engine.SetViewingOnly(true);
    ASSERT_TRUE(Open(Tower()));
    EXPECT_EQ(Paint().rgba, whole.rgba);
    EXPECT_EQ(Paint().rgba, whole.rgba);
    const bool isInPlace = CGlCapabilities::Query(Context().MakeCurrent()).memoryInPlace;
    EXPECT_NE(m_engine.Prepared()->meshes.front().vertices.empty(), isInPlace);
    EXPECT_FALSE(m_engine.DeleteNode("High"));
    EXPECT_EQ(m_engine.Get3dsFile(), nullptr);
}

/** A cube with its front so many times. */
CBytes Fronts(std::uint16_t count) {
    CBytes faces = Words({static_cast<std::uint16_t>(2 * count)});
    for (int i = 0; i < count; ++i) faces = faces + Words({0, 1, 5, 7, 0, 5, 4, 7});
    return Scene(Mesh("Front", CubePoints() + Chunk(0x4120, faces)));
}

TEST_F(C3dsDisplayWrapGLTest, ThousandsOfLayersAreDrawnCoarserInTheSameColours) {
    if (!CGlCapabilities::Query(Context().MakeCurrent()).software)
        GTEST_SKIP() << "hardware draws all as it is";
    const auto take = [&](std::uint16_t count) {
        EXPECT_TRUE(Open(Fronts(count)));
        m_engine.SetFrontCameraModel();
        CSeenView seen = m_engine.SeenView();
        seen.camera.SetViewSize(640, 482);
        seen.background = {0, 1, 0};
        return m_engine.TakePicture(seen, EPictureOf::ModelAndOverlays, DrawWhiteCorner).Value();
    };
    const CImage one = take(1);
    EXPECT_EQ(m_engine.GetLastReduction(), 0);
    const CImage many = take(4'000);
    EXPECT_GE(m_engine.GetLastReduction(), 2);
    for (const auto& [x, y] :
         {std::pair(320, 240), std::pair(300, 200), std::pair(340, 260), std::pair(8, 8), std::pair(1, 480)})
        EXPECT_TRUE(HasColor(many, x, y, ColorAt(one, x, y)));
    EXPECT_NE(ColorAt(many, 320, 240), ColorAt(many, 8, 8));
    EXPECT_NEAR(CountDrawn(many), CountDrawn(one), CountDrawn(one) / 10);
    (void)Context().MakeCurrent();
    m_engine.SetPreviewSize(C2DRect(0, 0, kWidth / 8, kHeight / 8));
    (void)Paint();
    EXPECT_EQ(m_engine.GetLastReduction(), 0);  // so small a picture takes no time
}

TEST_F(C3dsDisplayWrapGLTest, MovingPicturesThatTakeTooLongAreSmaller) {
    if (!CGlCapabilities::Query(Context().MakeCurrent()).software)
        GTEST_SKIP() << "hardware draws all as it is";
    // So many triangles that the clock is looked at before the end, so few pixels that the full picture is quick.
    ASSERT_TRUE(Open(Fronts(25'500)));
    m_engine.SetPreviewSize(C2DRect(0, 0, kWidth / 8, kHeight / 8));
    m_engine.SetFrontCameraModel();
    const CImage rest = Paint();
    double now = 0;
    m_engine.SetFrameClock([&now] { return now += 50; });
    m_engine.SetMoving(true);
    for (int frame = 0; frame < 2; ++frame) {
        EXPECT_EQ(m_engine.GetLastReduction(), 0) << frame;
        (void)Paint();
    }
    EXPECT_EQ(m_engine.GetLastReduction(), 2);
    EXPECT_FALSE(m_engine.IsLastFrameWhole());
    m_engine.SetMoving(false);
    EXPECT_EQ(Paint().rgba, rest.rgba);
    EXPECT_TRUE(m_engine.IsLastFrameWhole());
}

}  // namespace
