// SPDX-License-Identifier: MIT
// What is drawn while something moves, and the full picture after it.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

#include "engine/CPictureTest.h"
#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/gl_api.h"

using namespace test_scenes;

namespace {

/** Six spheres of 40,000 triangles side by side, one of glass: more than a slow machine draws in a moving frame. */
class MovingGLTest : public CPictureTest {
  protected:
    void SetUp() override {
        CPictureTest::SetUp();
        if (!CGlCapabilities::Query(Gl()).software) GTEST_SKIP() << "hardware draws all in full";
        for (int i = 0; i < 6; ++i) {
            CPreparedMaterial material = Plain({0.3f + 0.1f * static_cast<float>(i), 0.8f, 0.5f});
            material.specular = {0.5f, 0.5f, 0.5f};
            material.shininessStrength = 0.5f;
            if (i == 0) material.transparency = 0.5f;
            material.needsBlending = i == 0;
            const CVec3 place{static_cast<float>(i % 3) - 1, static_cast<float>(i / 3) - 0.5f, 0};
            CPreparedMesh sphere = MakeSphere(0.45f, 100);
            sphere.stamp = static_cast<std::uint64_t>(i) + 1;
            m_builder.Add(sphere, material, CMat4::Translation(place));
        }
        LookFrom({0, 0, 3});
        m_renderer.Upload(Gl(), m_builder.Scene());
    }

    CImage DrawMoving() { return DrawPaced({true, nullptr, &m_clock}); }
    CImage DrawPaced(const CDrawPace& pace) {
        Place();
        m_whole = m_renderer.Draw(Gl(), m_builder.Scene(), {}, pace);
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return Context().ReadPixels().Value();
    }
    CImage DrawFull() { return DrawPaced({false, nullptr, &m_clock}); }

    /** As in idle time after a slow picture. */
    void MakeLevels() {
        (void)DrawFull();
        while (m_renderer.WorkOnLevels(Gl(), m_builder.Scene(), {}))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    /** Each look at the clock passes so many milliseconds: a frame looks at its begin, between portions, at its end. */
    double m_step = 30, m_now = 0;
    std::function<double()> m_clock = [this] { return m_now += m_step; };
    bool m_whole = false;
};

double Decibels(const CImage& a, const CImage& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.rgba.size(); ++i)
        sum += std::pow(static_cast<double>(a.rgba[i]) - b.rgba[i], 2);
    return sum > 0 ? 10 * std::log10(255 * 255 * static_cast<double>(a.rgba.size()) / sum) : 99;
}

TEST_F(MovingGLTest, LevelsStandForWhatDoesNotFit) {
    const CImage full = DrawFull();
    EXPECT_TRUE(m_whole);
    const std::size_t before = m_renderer.GpuBytes();
    MakeLevels();
    EXPECT_GT(m_renderer.GpuBytes(), before);
    EXPECT_LE(m_renderer.GpuBytes(), before + before / 3);
    m_step = 10;  // ends in time, but all is too much
    CImage moving;
    for (int frame = 0; frame < 8; ++frame) moving = DrawMoving();
    EXPECT_FALSE(m_whole);
    EXPECT_GT(Decibels(moving, full), 32);
    EXPECT_LT(Decibels(moving, full), 60);
    const CImage rest = DrawFull();
    EXPECT_TRUE(m_whole);
    EXPECT_GT(Decibels(rest, full), 50);
    const CImage exact = (Place(), DrawAgain({.exact = true}));
    EXPECT_EQ(exact.rgba, full.rgba);
}

TEST_F(MovingGLTest, TheClockEndsAFrameThatTakesTooLong) {
    const CImage full = DrawFull();
    m_step = 100;
    const CImage moving = DrawMoving();
    EXPECT_FALSE(m_whole);
    EXPECT_GT(CountDrawn(moving), 0);
    EXPECT_LT(CountDrawn(moving), CountDrawn(full) * 3 / 4);
}

TEST_F(MovingGLTest, WhatFitsIsDrawnInFull) {
    m_builder.Scene().nodes.resize(2);
    m_renderer.Refresh(Gl(), m_builder.Scene());
    m_step = 1;
    const CImage full = DrawFull();
    EXPECT_EQ(DrawMoving().rgba, full.rgba);
    EXPECT_TRUE(m_whole);
    EXPECT_FALSE(m_renderer.WorkOnLevels(Gl(), m_builder.Scene(), {}));
}

TEST_F(MovingGLTest, AFullPictureIsInterruptedBetweenItsPortions) {
    const CImage full = DrawFull();
    int asked = 0;
    std::function<bool()> interrupt = [&] { return ++asked == 2; };
    const CImage part = DrawPaced({false, &interrupt, nullptr});
    EXPECT_FALSE(m_whole);
    EXPECT_EQ(asked, 2);
    EXPECT_LT(CountDrawn(part), CountDrawn(full));
    EXPECT_EQ(DrawPaced({false, &interrupt, nullptr}).rgba, full.rgba);
    EXPECT_TRUE(m_whole);
    asked = 0;
    (void)DrawPaced({true, &interrupt, &m_clock});
    EXPECT_EQ(asked, 0);
}

TEST_F(MovingGLTest, GettingReadyForAnotherSceneLeavesThisOneAlone) {
    const CImage full = DrawFull();
    CBuilder kinds;
    CPreparedMaterial mapped = Plain({1, 1, 1});
    mapped.texture = kinds.AddTexture(QuarterImage());
    mapped.needsBlending = true;
    mapped.transparency = 0.5f;
    kinds.Add(MakePlane(), mapped);
    kinds.Add(MakeCube(), mapped);
    EXPECT_TRUE(m_renderer.GetReadyFor(Gl(), kinds.Scene(), {}));  // the picture
    EXPECT_TRUE(m_renderer.GetReadyFor(Gl(), kinds.Scene(), {}));  // the surface
    EXPECT_FALSE(m_renderer.GetReadyFor(Gl(), kinds.Scene(), {}));
    EXPECT_EQ(DrawFull().rgba, full.rgba);
}

TEST_F(MovingGLTest, AChangedMeshIsNotShownByItsOldLevels) {
    MakeLevels();
    for (std::size_t i = 0; i < 6; ++i) {
        CPreparedMesh& mesh = m_builder.Scene().meshes[i];
        for (CPreparedVertex& vertex : mesh.vertices) vertex.position[0] *= 0.2f;
        mesh.stamp += 100;
    }
    m_renderer.Refresh(Gl(), m_builder.Scene());
    m_step = 10;
    CImage moving;
    for (int frame = 0; frame < 4; ++frame) moving = DrawMoving();
    const CImage full = DrawFull();
    EXPECT_LT(CountDrawn(moving), CountDrawn(full) * 11 / 10);
    MakeLevels();
    EXPECT_GT(Decibels(DrawMoving(), full), 32);
}

TEST_F(MovingGLTest, SurfacesInOnePlaceAreDrawnOnce) {
    const CImage once = DrawFull();
    CPreparedScene& scene = m_builder.Scene();
    for (int copy = 0; copy < 3; ++copy) {
        scene.nodes.push_back(scene.nodes[4]);
        scene.meshes.push_back(scene.meshes[5]);
        scene.nodes.push_back(scene.nodes[5]);
        scene.nodes.back().mesh = static_cast<int>(scene.meshes.size()) - 1;
    }
    m_renderer.Refresh(Gl(), scene);
    EXPECT_EQ(DrawFull().rgba, once.rgba);
    // What is transparent darkens what is behind it as often as it stands there.
    scene.nodes.push_back(scene.nodes[0]);
    m_renderer.Refresh(Gl(), scene);
    EXPECT_NE(DrawFull().rgba, once.rgba);
}

}  // namespace
