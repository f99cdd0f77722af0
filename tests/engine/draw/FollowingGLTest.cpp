// SPDX-License-Identifier: MIT
// Pictures while an edit follows the user's hand, drawn onto what was kept of those before, beside pictures drawn anew.
#include <gtest/gtest.h>

#include <functional>

#include "engine/CPictureTest.h"
#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/gl_api.h"
#include "row_name.h"

using namespace test_scenes;

namespace {

constexpr std::size_t kEdited = 2;  ///< the material, and the node, whose values follow the hand
constexpr int kSteps = 8;

struct CScenery {
    CPreparedScene& scene;
    CDrawOptions& options;
    bool& wire;
};

/** A scene, and what happens to it at each step. */
struct CRow {
    const char* name;
    std::function<void(CScenery)> prepare;
    std::function<void(CScenery, int step)> edit;
    int whole = 1;  ///< of the pictures, so many are drawn as any other
};

CPreparedMaterial& Edited(CScenery s) {
    return s.scene.materials[kEdited];
}

void Nothing(CScenery) {}

void Recolor(CScenery s, int step) {
    Edited(s).diffuse = {0.1f * static_cast<float>(step), 0.5f, 0.9f};
}

void Fade(CScenery s, int step) {
    CPreparedMaterial& material = Edited(s);
    material.transparency = step % 4 == 0 ? 0 : 0.25f * static_cast<float>(step % 4 + 1);
    material.needsBlending = material.transparency > 0;
}

void MakeGlass(CPreparedMaterial& material) {
    material.transparency = 0.4f;
    material.needsBlending = true;
}

/** Changes something else, too, half-way: what was kept is of no use then. */
std::function<void(CScenery, int)> RecolorThen(const std::function<void(CScenery)>& other) {
    return [other](CScenery s, int step) {
        Recolor(s, step);
        if (step == 4) other(s);
    };
}

void PutInThePlaceOfAnother(CScenery s) {
    s.scene.meshes[1] = s.scene.meshes[2];
    s.scene.meshes[1].batches.front().material = 1;
    s.scene.nodes[1].meshToWorld = s.scene.nodes[2].meshToWorld;
}

void CutOut(CScenery s) {
    Edited(s).texture = s.scene.materials[4].texture;
    Edited(s).needsBlending = true;
}

void Flatten(CScenery s) {
    for (CPreparedVertex& vertex : s.scene.meshes[3].vertices) vertex.position[2] *= 0.5f;
    ++s.scene.meshes[3].stamp;
}

void RecolorTheNext(CScenery s, int step) {
    if (step < 4) return Recolor(s, step);
    s.scene.materials[3].diffuse.x = 0.1f * static_cast<float>(step);
}

const std::vector<bool> kEditedAlone{false, false, true, false, false},
    kOthers{true, true, false, true, true};
const auto kMakeOthersGlass = [](CScenery s) {
    for (const unsigned other : {1u, 3u}) MakeGlass(s.scene.materials[other]);
};
const auto kMove = [](CScenery s) { s.scene.nodes[3].meshToWorld = CMat4::Translation({-1, 0, 0}); };
const auto kLight = [](CScenery s) { s.scene.lights.push_back(LightAt({0, -3, 3})); };

const CRow kRows[] = {
    {"Color", Nothing, Recolor},
    {"FromSolidToGlassAndGone", Nothing, Fade},
    {"GlassBeforeAndBehind", kMakeOthersGlass, Recolor},
    {"GlassItself", [](CScenery s) { MakeGlass(Edited(s)); }, Recolor},
    {"CutOut", CutOut, Recolor},
    {"Lines", [](CScenery s) { Edited(s).wire = true; }, Recolor},
    {"AllLines", [](CScenery s) { s.wire = true; }, Recolor},
    {"OthersDimmed", [](CScenery s) { s.options.dimmed = kOthers; }, Recolor},
    {"Dimmed", [](CScenery s) { s.options.dimmed = kEditedAlone; }, Recolor},
    {"InThePlaceOfAnother", PutInThePlaceOfAnother, Recolor},
    {"ThenAnother", Nothing, RecolorTheNext},
    {"ThenAnotherMoves", Nothing, RecolorThen(kMove), 2},
    {"ThenAnotherIsHidden", Nothing, RecolorThen([](CScenery s) { s.scene.nodes[3].visible = false; }), 2},
    {"ThenALampIsLit", Nothing, RecolorThen(kLight), 2},
    {"ThenAnotherMeshHasBecomeSmaller", Nothing, RecolorThen(Flatten), 2},
    {"ThenWithoutTextures", Nothing, RecolorThen([](CScenery s) { s.options.textureRenderMode = 3; }), 2},
    {"ThenOthersAreDimmed", Nothing, RecolorThen([](CScenery s) { s.options.dimmed = kOthers; }), 2},
};

class FollowingGLTest : public CPictureTest, public testing::WithParamInterface<CRow> {
  protected:
    void SetUp() override {
        CPictureTest::SetUp();
        if (!CGlCapabilities::Query(Gl()).software) GTEST_SKIP() << "hardware draws all anew";
        CPreparedMaterial cutOut = Plain({1, 1, 1});
        cutOut.texture = m_builder.AddTexture(MakeImage(16, 16, [](int x, int y) {
            return std::array<std::uint8_t, 4>{200, 120, 40, static_cast<std::uint8_t>((x + y) * 8)};
        }));
        cutOut.needsBlending = true;
        m_builder.Add(MakePlane(5), Plain({0.3f, 0.6f, 0.3f}), CMat4::Translation({0, 0, -1}));
        m_builder.Add(MakeSphere(0.6f), Plain({0.8f, 0.8f, 0.2f}), CMat4::Translation({0.8f, 0, 0}));
        CPreparedMaterial shiny = Plain({0.5f, 0.5f, 0.5f});
        shiny.shininessStrength = 0.5f;
        m_builder.Add(MakeCube(1), shiny, CMat4::Translation({0.2f, 0.2f, 0}));
        m_builder.Add(MakeSphere(0.4f), Plain({0.9f, 0.3f, 0.3f}), CMat4::Translation({-0.3f, -0.5f, 0.4f}));
        m_builder.Add(MakePlane(1), cutOut, CMat4::Translation({-0.4f, 0.3f, 0.9f}));
        LookFrom({0.5f, -2.5f, 3});
    }

    CImage Picture(CSceneRenderer& renderer, bool follows) {
        Place();
        glPolygonMode(GL_FRONT_AND_BACK, m_wire ? GL_LINE : GL_FILL);
        const CDrawPace pace{.follows = follows};
        m_isWhole = renderer.Draw(Gl(), m_builder.Scene(), m_options, pace);
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return Context().ReadPixels().Value();
    }

    CDrawOptions m_options;
    bool m_wire = false, m_isWhole = false;
};

TEST_P(FollowingGLTest, ShowsWhatAPictureDrawnAnewShows) {
    const CScenery scenery{m_builder.Scene(), m_options, m_wire};
    GetParam().prepare(scenery);
    m_renderer.Upload(Gl(), m_builder.Scene());
    int whole = 0;
    for (int step = 0; step < kSteps; ++step) {
        GetParam().edit(scenery, step);
        m_renderer.Refresh(Gl(), m_builder.Scene());
        const CImage followed = Picture(m_renderer, true);
        whole += m_isWhole;
        CSceneRenderer fresh;
        fresh.Upload(Gl(), m_builder.Scene());
        EXPECT_EQ(followed.rgba, Picture(fresh, false).rgba) << "step " << step;
        fresh.Clear(Gl());
    }
    EXPECT_EQ(whole, GetParam().whole);
}

INSTANTIATE_TEST_SUITE_P(Kinds, FollowingGLTest, testing::ValuesIn(kRows), kRowName);

class TurnedFollowingGLTest : public FollowingGLTest {};

TEST_F(TurnedFollowingGLTest, AnotherViewIsDrawnAnew) {
    const CScenery scenery{m_builder.Scene(), m_options, m_wire};
    m_renderer.Upload(Gl(), m_builder.Scene());
    const auto follow = [&](int step) {
        Recolor(scenery, step);
        m_renderer.Refresh(Gl(), m_builder.Scene());
        const CImage picture = Picture(m_renderer, true);
        EXPECT_EQ(picture.rgba, Picture(m_renderer, false).rgba) << "step " << step;
    };
    follow(1);
    follow(2);
    LookFrom({-0.5f, -2.5f, 3});
    follow(3);
    follow(4);
    (void)Picture(m_renderer, true);  // nothing has changed
    follow(5);
    m_renderer.ForgetKept();
    follow(6);
}

}  // namespace
