// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <vector>

#include "engine/CPictureTest.h"
#include "engine/gl/CGlCurrent.h"
#include "engine/gl/gl_api.h"
#include "engine/pipeline/CFrameLights.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CShaderPipeline.h"
#include "engine/pipeline/CTextureSet.h"

using namespace test_scenes;

namespace {

constexpr CColor kBackground{51, 51, 51};
constexpr int kMiddleX = 160, kMiddleY = 120;

CPreparedMaterial Glass(CVec3 color) {
    return {
        .ambient = color, .diffuse = color, .transparency = 0.5f, .twoSided = true, .needsBlending = true};
}

class SceneRendererGLTest : public CPictureTest {};

TEST_F(SceneRendererGLTest, OneSidedIsSeenFromItsFrontOnlyAndHiddenNotAtAll) {
    m_builder.Add(MakePlane(1), Plain({1, 0, 0}), CMat4::Translation({-1, 0, 0}));
    m_builder.Add(MakePlane(1), {.diffuse = {0, 1, 0}, .twoSided = true}, CMat4::Translation({1, 0, 0}));
    m_builder.Add(MakePlane(6), Plain({0, 0, 1}), CMat4::Translation({0, 0, 1}));
    m_builder.Scene().nodes[2].visible = false;
    const int left = 105, right = 215;
    const CImage front = Draw();
    EXPECT_EQ(ColorAt(front, left, kMiddleY)[1], 0);
    EXPECT_NE(ColorAt(front, left, kMiddleY), kBackground);
    LookFrom({0, 0, -5});
    const CImage back = Draw();
    EXPECT_EQ(ColorAt(back, right, kMiddleY), kBackground);
    // The camera's up stays +y, so left and right change places; the two-sided square is as bright as before.
    EXPECT_TRUE(HasColor(back, left, kMiddleY, ColorAt(front, right, kMiddleY), 2));
}

TEST_F(SceneRendererGLTest, MirroredNodesAndViewsKeepTheirFrontFaces) {
    m_builder.Add(MakePlane(1), Plain({1, 0, 0}), CMat4::Scale({-1, 1, 1}));
    EXPECT_TRUE(HasColor(Draw(), kMiddleX, kMiddleY, {255, 0, 0}));
    m_turn = CMatrix4d::From(CMat4::Scale({1, -2, 1}));
    EXPECT_TRUE(HasColor(Draw(), kMiddleX, kMiddleY, {255, 0, 0}));
    m_turn = CMatrix4d::From(CMat4::Rotation(180, {0, 1, 0}));
    EXPECT_EQ(CountDrawn(Draw()), 0);
}

TEST_F(SceneRendererGLTest, GlassIsSortedInsideOneBatchAndAgainWhenTheViewTurns) {
    CPreparedMaterial glass = Glass({1, 1, 1});
    glass.texture = m_builder.AddTexture(QuarterImage());
    CPreparedMesh mesh = MakePlane(), above = mesh;
    for (CVec2& uv : mesh.texCoords) uv = {0.25f, 0.75f};   // red
    for (CVec2& uv : above.texCoords) uv = {0.75f, 0.25f};  // white
    for (CPreparedVertex& vertex : above.vertices) vertex.position[2] = 1;
    Append(mesh, above, 0);
    mesh.batches = {{0, 0, mesh.IndexCount()}};
    mesh.bounds.max.z = 1;
    m_builder.Add(mesh, glass);
    EXPECT_GT(ColorAt(Draw(), kMiddleX, kMiddleY)[1], 120);
    LookFrom({0, 0, -5});
    Place();
    EXPECT_LT(ColorAt(DrawAgain(), kMiddleX, kMiddleY)[1], 90);
}

TEST_F(SceneRendererGLTest, ModelsFarFromTheOriginDoNotTremble) {
    const CVec3 away{300000, -200000, 100000};
    m_builder.Add(MakeSphere(), Plain({1, 1, 1}));
    LookFrom({0, -5, 0});
    const CImage near = Draw();
    m_builder.Scene().nodes[0].meshToWorld = CMat4::Translation(away);
    m_builder.Scene().nodes[0].worldBounds =
        m_builder.Scene().meshes[0].bounds.Transformed(CMat4::Translation(away));
    LookFrom(away + CVec3{0, -5, 0}, away);
    const CImage far = Draw();
    EXPECT_NEAR(CountDrawn(far), CountDrawn(near), CountDrawn(near) / 50);
    EXPECT_TRUE(HasColor(far, kMiddleX, kMiddleY, {255, 255, 255}, 2));
}

TEST_F(SceneRendererGLTest, ParallelProjectionIsLitFromTheViewersDirection) {
    m_builder.Add(MakePlane(), Plain({0.5f, 0.5f, 0.5f}), CMat4::Rotation(60, {1, 0, 0}));
    m_projection = CMatrix4d::From(CMat4::Scale({0.5f, 0.5f, -0.1f}));
    EXPECT_TRUE(HasColor(Draw(), kMiddleX, kMiddleY, {64, 64, 64}));
    EXPECT_TRUE(HasColor(Draw({true, 0, true}), kMiddleX, kMiddleY, {64, 64, 64}, 2));
    // Where it joins a light of the file that shines on the back, nothing else changes.
    m_builder.Scene().lights = {LightAt({0, 0, -9})};
    EXPECT_TRUE(HasColor(Draw(), kMiddleX, kMiddleY, {0, 0, 0}));
    m_builder.Scene().headlightJoins = true;
    EXPECT_TRUE(HasColor(Draw(), kMiddleX, kMiddleY, {64, 64, 64}, 2));
    EXPECT_TRUE(HasColor(Draw({true, 0, true}), kMiddleX, kMiddleY, {64, 64, 64}, 2));
}

TEST_F(SceneRendererGLTest, TexturesCanBeSwitchedOffAndMissingOnesShowTheColour) {
    CPreparedMaterial material = Plain({0, 1, 0});
    material.texture = m_builder.AddTexture(OneColorImage({255, 0, 0, 255}));
    material.opacity.texture = 77;
    m_builder.Add(MakePlane(), material);
    EXPECT_TRUE(HasColor(Draw(), kMiddleX, kMiddleY, {255, 0, 0}));
    EXPECT_TRUE(HasColor(Draw({.textureRenderMode = 3}), kMiddleX, kMiddleY, {0, 255, 0}));
    m_builder.Scene().textures[0].image = {};
    EXPECT_TRUE(HasColor(Draw(), kMiddleX, kMiddleY, {0, 255, 0}));
}

TEST_F(SceneRendererGLTest, HazeOfAPictureThatCutsOutIsNotDrawn) {
    CPreparedMaterial material = Plain({0, 1, 0});
    material.needsBlending = true;
    m_builder.Add(MakePlane(), material);
    CPreparedMaterial& drawn = m_builder.Scene().materials[0];
    drawn.texture = m_builder.AddTexture(OneColorImage({255, 255, 255, 5}));
    EXPECT_EQ(CountDrawn(Draw()), 0);
    drawn.texture = {};
    drawn.opacity = m_builder.AddTexture(OneColorImage({5, 5, 5, 255}));
    EXPECT_EQ(CountDrawn(Draw()), 0);
    drawn.opacity = m_builder.AddTexture(OneColorImage({60, 60, 60, 255}));
    EXPECT_GT(CountDrawn(Draw()), 0);
}

// --- life of the buffers ---

TEST_F(SceneRendererGLTest, RefreshShowsEditedMaterialsTexturesAndNodes) {
    CPreparedMaterial material = Plain({1, 1, 1});
    material.texture = m_builder.AddTexture(QuarterImage());
    m_builder.Add(MakePlane(), material);
    m_builder.Add(MakePlane(), Plain({0, 0, 1}), CMat4::Translation({0, 0, 1}));
    EXPECT_TRUE(HasColor(Draw(), kMiddleX, kMiddleY, {0, 0, 255}));
    const std::size_t before = m_renderer.GpuBytes();

    CPreparedScene& scene = m_builder.Scene();
    scene.nodes.pop_back();
    scene.meshes.pop_back();
    scene.materials[0].texture = m_builder.AddTexture(OneColorImage({0, 255, 0, 255}));
    m_renderer.Refresh(Gl(), scene);
    Place();
    EXPECT_TRUE(HasColor(DrawAgain(), kMiddleX, kMiddleY, {0, 255, 0}));
    EXPECT_LT(m_renderer.GpuBytes(), before);

    for (CPreparedTexture& texture : scene.textures)
        texture.image = {};  // given back: what was uploaded stays
    m_renderer.Refresh(Gl(), scene);
    EXPECT_TRUE(HasColor(DrawAgain(), kMiddleX, kMiddleY, {0, 255, 0}));
    m_renderer.Clear(Gl());
    EXPECT_EQ(m_renderer.GpuBytes(), 0u);
}

TEST_F(SceneRendererGLTest, LeavesTheStateAsItFoundIt) {
    CPreparedMaterial glass = Glass({1, 1, 1});
    glass.texture = m_builder.AddTexture(QuarterImage());
    m_builder.Add(MakeCube(), glass, CMat4::Scale({-1, 1, 1}));
    m_builder.Add(MakeCube(), {.wire = true, .wireSizePx = 3});
    m_builder.Scene().lights = {LightAt({1, 2, 3}), LightAt({3, 2, 1})};
    (void)Draw();
    glFrontFace(GL_CW);
    glCullFace(GL_FRONT);
    glEnable(GL_POLYGON_SMOOTH);
    glColor4f(0.1f, 0.2f, 0.3f, 0.4f);
    glMatrixMode(GL_TEXTURE);
    const std::vector<double> before = ReadGlState();
    for (const CDrawOptions& options :
         {CDrawOptions{},
          CDrawOptions{.useFileLights = false, .textureRenderMode = 2, .fixedFunction = true}}) {
        m_renderer.Draw(Gl(), m_builder.Scene(), options);
        EXPECT_EQ(ReadGlState(), before);
    }
    m_renderer.DrawForSelection(Gl(), m_builder.Scene());
    EXPECT_EQ(ReadGlState(), before);
    m_renderer.Refresh(Gl(), m_builder.Scene());
    EXPECT_EQ(ReadGlState(), before);
    glFrontFace(GL_CCW);
    glCullFace(GL_BACK);
    glDisable(GL_POLYGON_SMOOTH);
}

int s_built = 0;

/** A driver that takes the first program alone. */
CResult<CGlProgram> BuildFirst(CGlCurrent& gl, const std::string& vertex, const std::string& fragment) {
    if (++s_built == 1) return CGlProgram::Build(gl, vertex, fragment);
    return CError{EErrorCode::NoGraphics, "too long", ""};
}

TEST_F(SceneRendererGLTest, AProgramThatIsRejectedIsNotCompiledAgainInEachFrame) {
    s_built = 0;
    CShaderPipeline pipeline(&BuildFirst);
    ASSERT_TRUE(pipeline.Check(Gl()));
    const CFrameView view;
    CFrameLights lights;
    lights.lights.resize(2);
    CTextureSet none;
    for (int frame = 0; frame < 3; ++frame) {
        pipeline.Begin(Gl(), {view, lights, none});
        pipeline.UseMaterial(Gl(), Plain({1, 0, 0}), CSurfaceUse{});
        pipeline.End(Gl());
        pipeline.Trim();
    }
    EXPECT_EQ(s_built, 2);
}

}  // namespace
