// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/CEngineTest.h"

using namespace test_scenes;

namespace {

constexpr int kWidth = 320, kHeight = 240;

/** What stands behind a scene, and which of its nodes are dimmed, in the engine's pictures. */
class BackdropGLTest : public CEngineTest<kWidth, kHeight> {
  protected:
    void SetUp() override {
        CEngineTest::SetUp();
        ASSERT_TRUE(Open(Tower()));
    }
    CImage Take() {
        CImage taken = m_engine.TakePicture(m_engine.SeenView(), EPictureOf::ModelAndOverlays).Value();
        (void)Context().MakeCurrent();
        (void)glGetError();  // here there is no window for TakePicture to go back to
        return taken;
    }
    void Show(CImage image) { m_engine.SetBackgroundImage(std::make_shared<const CImage>(std::move(image))); }
};

TEST_F(BackdropGLTest, PictureStandsBehindTheSceneExactly) {
    const CImage plain = Paint();
    const CImage picture = MakeImage(kWidth, kHeight, [](int x, int y) {
        return std::array<std::uint8_t, 4>{static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y),
                                           static_cast<std::uint8_t>(x * y), 255};
    });
    Show(picture);
    const std::vector<double> before = ReadGlState();
    const CImage window = Paint();
    int behind = 0;
    for (std::size_t i = 0; i < plain.rgba.size(); i += 4) {
        const bool isScene = plain.rgba[i] != 0 || plain.rgba[i + 1] != 0 || plain.rgba[i + 2] != 255;
        behind += !isScene;
        const CImage& expected = isScene ? plain : picture;
        for (std::size_t c = 0; c < 4; ++c) ASSERT_EQ(window.rgba[i + c], expected.rgba[i + c]) << i / 4;
    }
    EXPECT_GT(behind, kWidth * kHeight / 2);
    EXPECT_LT(behind, kWidth * kHeight - 1000);
    EXPECT_TRUE(HasColor(Take(), kWidth - 1, kHeight - 1, ColorAt(picture, kWidth - 1, kHeight - 1), 0));
    EXPECT_EQ(Paint().rgba, window.rgba);
    EXPECT_EQ(ReadGlState(), before);
    ASSERT_TRUE(Open(Tower()));
    EXPECT_EQ(Paint().rgba, plain.rgba) << "another scene shows the picture of the one before";
}

TEST_F(BackdropGLTest, PictureCoversAViewOfAnotherShape) {
    Show(QuarterImage(1000));
    m_engine.SetScale({0.01, 0.01, 0.01});
    for (const auto& [width, height] : {std::pair{320, 240}, {120, 240}, {320, 90}}) {
        SCOPED_TRACE(width);
        m_engine.SetPreviewSize(C2DRect(0, 0, width, height));
        const CImage seen = Take();
        ASSERT_EQ(seen.width, width);
        EXPECT_TRUE(HasColor(seen, 0, 0, {255, 0, 0}));
        EXPECT_TRUE(HasColor(seen, width - 1, 0, {0, 255, 0}));
        EXPECT_TRUE(HasColor(seen, width - 1, height - 1, {255, 255, 255}));
        EXPECT_TRUE(HasColor(seen, width / 2 - 2, height / 2 - 30, {255, 0, 0}))
            << "its middle is not in the middle";
    }
}

TEST_F(BackdropGLTest, TransparencyShowsTheBackgroundColour) {
    Show(OneColorImage({255, 255, 255, 64}));
    const CImage seen = Take();
    EXPECT_TRUE(HasColor(seen, 0, 0, {64, 64, 255}));
    EXPECT_EQ(seen.Pixel(0, 0)[3], 255);
}

TEST_F(BackdropGLTest, EmphasisLeavesTheOthersAGhost) {
    const CImage plain = Paint();
    m_engine.SetEmphasis(std::vector<std::string>{"High", "no such node"});
    const CImage shown = Paint();
    const CImage taken = Take();
    EXPECT_EQ(ColorAt(shown, 160, 60), ColorAt(plain, 160, 60)) << "what stands out changes";
    const CColor before = ColorAt(plain, 160, 190), ghost = ColorAt(shown, 160, 190);
    EXPECT_GT(before[0], 40);
    EXPECT_NEAR(ghost[0], before[0] * 0.16, 2);
    EXPECT_NEAR(ghost[2], 255 * 0.84 + before[2] * 0.16, 2);
    m_engine.SetEmphasis({});
    EXPECT_EQ(Paint().rgba, plain.rgba);
    EXPECT_EQ(Take().rgba, taken.rgba) << "a saved picture is dimmed";
    m_engine.SetEmphasis(std::vector<std::string>{"Low"});
    ASSERT_TRUE(m_engine.DeleteNode("High"));
    EXPECT_EQ(ColorAt(Paint(), 160, 190), before) << "nodes are confused after an edit";
    ASSERT_TRUE(Open(Tower()));
    EXPECT_EQ(Paint().rgba, plain.rgba) << "another scene is dimmed";
}

// --- dimmed parts, in both pipelines ----------------------------------------------------------------------

/** As bright at its middle where light is computed by vertex. */
CPreparedMaterial Bright(CVec3 color) {
    CPreparedMaterial material = Plain(color);
    material.selfIllumination = 1;
    return material;
}

class DimmedGLTest : public CPictureTest, public testing::WithParamInterface<bool> {
  protected:
    /** In the middle of the picture, of planes that face the eye. */
    CColor Middle(const std::vector<bool>& dimmed) {
        CDrawOptions options;
        options.fixedFunction = GetParam();
        options.dimmed = dimmed;
        return ColorAt(Draw(options), 160, 120);
    }
};

// The background is 51.
TEST_P(DimmedGLTest, NearestGhostVeilsWhatIsBehindOnce) {
    for (const float height : {0.0f, 0.5f, 1.0f})
        m_builder.Add(MakePlane(), Bright({1, 0, 0}), CMat4::Translation({0, 0, height}));
    m_builder.Add(MakePlane(), Bright({0, 1, 0}), CMat4::Translation({0, 0, -0.5f}));
    const auto near = [](CColor a, CColor b) {
        for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(a[c], b[c], 2);
    };
    near(Middle({}), {255, 0, 0});
    near(Middle({true, true, true, true}), {84, 43, 43});   // three are not three times as thick
    near(Middle({true, true, true, false}), {41, 214, 0});  // what stands out is seen through them
    near(Middle({true, false, true, false}), {255, 0, 0});
}

TEST_P(DimmedGLTest, GlassAndHolesAreDimmedToo) {
    CPreparedMaterial glass = Bright({1, 1, 1});
    glass.transparency = 0.5f;
    glass.needsBlending = true;
    m_builder.Add(MakePlane(), glass);
    EXPECT_NEAR(Middle({true})[0], 51 + 0.08 * 204, 2);
    CPreparedMaterial leaf = Bright({1, 1, 1});
    leaf.texture = m_builder.AddTexture(OneColorImage({255, 255, 255, 255}));
    leaf.needsBlending = true;
    m_builder.Add(MakePlane(), leaf, CMat4::Translation({0, 0, 1}));
    EXPECT_NEAR(Middle({true, true})[0], 51 + 0.16 * 204, 2);
}

// Of equal nodes in one place only the first is drawn; one of them stands out all the same.
TEST_P(DimmedGLTest, TwinOfAGhostStandsOut) {
    m_builder.Add(MakePlane(), Bright({0, 1, 0}));
    m_builder.AddNode(0, {});
    EXPECT_EQ(Middle({true, false})[1], 255);
    EXPECT_EQ(Middle({false, true})[1], 255);
}

INSTANTIATE_TEST_SUITE_P(, DimmedGLTest, testing::Bool(),
                         [](const auto& row) { return std::string(row.param ? "Fixed" : "Shaders"); });

}  // namespace
