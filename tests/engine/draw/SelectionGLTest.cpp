// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <vector>

#include "engine/CPictureTest.h"
#include "engine/gl/CGlCurrent.h"
#include "engine/gl/gl_api.h"

using namespace test_scenes;

namespace {

class SelectionGLTest : public CPictureTest {
  protected:
    /** The names hit in a region of 5x5 pixels round a point of the picture, nearest first. */
    std::vector<unsigned> Hits(int x, int y) {
        (void)Draw();
        CMatrix4d region;
        region.m[0] = 320 / 5.0;
        region.m[5] = 240 / 5.0;
        region.m[12] = -(x / 160.0 - 1) * region.m[0];
        region.m[13] = (y / 120.0 - 1) * region.m[5];
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf((region * m_projection).ToFloat().data());
        glMatrixMode(GL_MODELVIEW);
        std::array<GLuint, 64> records{};
        glSelectBuffer(static_cast<GLsizei>(records.size()), records.data());
        glRenderMode(GL_SELECT);
        glInitNames();
        glPushName(~0u);
        m_renderer.DrawForSelection(Gl(), m_builder.Scene());
        const auto count = static_cast<std::size_t>(std::max(glRenderMode(GL_RENDER), 0));
        std::multimap<GLuint, unsigned> byDepth;
        for (std::size_t i = 0; i < count * 4; i += 4) byDepth.emplace(records[i + 1], records[i + 3]);
        std::vector<unsigned> names;
        for (const auto& [depth, name] : byDepth) names.push_back(name);
        return names;
    }
};

using CNames = std::vector<unsigned>;

TEST_F(SelectionGLTest, FindsNodesUnderThePointByDepth) {
    m_builder.Add(MakeCube(1), Plain({1, 0, 0}), CMat4::Translation({-1, 0, 0}));
    m_builder.Add(MakeSphere(0.5f), Plain({0, 1, 0}), CMat4::Translation({1, 0, 0}));
    m_builder.Add(MakePlane(6), Plain({0, 0, 1}), CMat4::Translation({0, 0, -1}));
    EXPECT_EQ(Hits(100, 120), (CNames{0, 2}));
    EXPECT_EQ(Hits(220, 120), (CNames{1, 2}));
    EXPECT_EQ(Hits(160, 120), (CNames{2}));
    EXPECT_EQ(Hits(1, 1), CNames{});
}

TEST_F(SelectionGLTest, HitsOnlyWhatCanBeSeen) {
    const CMat4 turned = CMat4::Rotation(180, {0, 1, 0});
    m_builder.Add(MakePlane(), Plain({1, 1, 1}), turned);  // seen from behind
    m_builder.Add(MakePlane(), Plain({1, 1, 1}));          // hidden
    m_builder.Add(MakePlane(), {.transparency = 1});
    m_builder.Add(MakePlane(), {.twoSided = true}, turned);
    m_builder.Add(MakePlane(), Plain({1, 1, 1}), turned * CMat4::Scale({1, 1, -1}));  // mirrored: facing here
    m_builder.Add(MakePlane(), {.wire = true});                                       // inside its triangles
    m_builder.Scene().nodes[1].visible = false;
    CNames names = Hits(140, 90);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (CNames{3, 4, 5}));
}

}  // namespace
