// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <random>

#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "frame/materials/node_picture.h"
#include "frame/materials/tool_values.h"
#include "model/prepare/CPreparedScene.h"
#include "row_name.h"
#include "script/CSceneScript.h"
#include "script/save_edits.h"

namespace {

constexpr int kWidth = 320, kHeight = 240;

COffscreenContext& Context() {
    static CResult<COffscreenContext> context = COffscreenContext::Create(kWidth, kHeight);
    return context.Value();
}

std::string Sample(const std::string& name) {
    return std::string(ORBIVUE_SAMPLES) + "/" + name;
}

/** A sample in an engine of its own. */
class CShownSample {
  public:
    explicit CShownSample(const char* name) {
        (void)Context().MakeCurrent();
        m_engine.SetPreviewSize(C2DRect(0, 0, kWidth, kHeight));
        EXPECT_TRUE(m_engine.OpenModel(file_util_ex::ConvertFromUTF8W(Sample(name)).c_str()));
    }
    /** Returns how many succeeded. */
    std::size_t Apply(std::span<const CEdit> edits) {
        const std::vector<CStatus> answers = m_engine.ApplyEdits(edits);
        return static_cast<std::size_t>(std::count_if(
            answers.begin(), answers.end(), [](const CStatus& status) { return status.HasValue(); }));
    }
    [[nodiscard]] std::vector<CChoice> Nodes() const { return ChoicesIn(*m_engine.Prepared()); }
    [[nodiscard]] CImage Picture() {
        m_engine.PaintModel();
        return Context().ReadPixels().Value();
    }

  private:
    C3dsDisplayWrap m_engine;
};

/** Tools, and what has none. */
using CKinds = std::vector<EMaterialTool>;
constexpr EMaterialTool kMove = EMaterialTool::None, kDelete = EMaterialTool::Filter;

struct CSaved {
    const char* name;
    const char* sample;
    CKinds kinds;
    int count = 12;
};

/** Edits as somebody makes who tries all he finds: the same parts again and again. */
class CPlayer {
  public:
    CPlayer(const CSaved& row, std::vector<CChoice> nodes)
        : m_row(row), m_nodes(std::move(nodes)), m_random(static_cast<unsigned>(row.count)) {}

    CEdit Next() {
        const EMaterialTool kind = m_row.kinds[Below(m_row.kinds.size())];
        const std::string& node = m_nodes[Below(std::min<std::size_t>(m_nodes.size(), 6))].name;
        CToolValues values;
        // Black is the one colour that tells nothing of what was there before.
        values.color = Below(3) > 0 ? CToolColor{Byte(), Byte(), Byte()} : CToolColor{};
        values.shininess = static_cast<int>(Below(11));
        values.transparency = static_cast<int>(Below(11));
        values.replacement = {Sample("vase.3ds"), ""};
        if (kind == kDelete) return CDeleteEdit{node};
        if (kind != kMove) return *ToolEdit(kind, node, values);
        return CMoveEdit{node, {static_cast<float>(Below(40)) / 8, static_cast<float>(Below(9)) - 4, 0}};
    }

  private:
    std::size_t Below(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(m_random);
    }
    std::uint8_t Byte() { return static_cast<std::uint8_t>(Below(256)); }

    const CSaved& m_row;
    std::vector<CChoice> m_nodes;
    std::mt19937 m_random;
};

class SavedEditsGLTest : public testing::TestWithParam<CSaved> {};

TEST_P(SavedEditsGLTest, ShowTheSamePictureWhenTheyAreReadBack) {
    CShownSample edited(GetParam().sample);
    const CImage before = edited.Picture();
    CPlayer player(GetParam(), edited.Nodes());
    std::vector<CEdit> done;
    for (int i = 0; i < GetParam().count; ++i) {
        const CEdit edit = player.Next();
        if (edited.Apply({&edit, 1}) == 1) done.push_back(edit);
    }
    ASSERT_FALSE(done.empty());
    const CImage picture = edited.Picture();
    EXPECT_NE(picture.rgba, before.rgba) << "nothing could be seen of the edits";

    const CTestFolder folder;
    const std::string script = folder / "scene.orv";
    const CStatus saved = SaveEdits(script, "Model", done, Sample(GetParam().sample));
    ASSERT_TRUE(saved) << saved.Error().Text();
    const CResult<CSceneScript> read = ReadScript(script);
    ASSERT_TRUE(read) << read.Error().Text();
    const std::vector<CEdit>& back = read.Value().scenes.front().edits;
    CShownSample again(GetParam().sample);
    EXPECT_EQ(again.Apply(back), back.size()) << CTestFolder::TextOf(script);
    EXPECT_TRUE(again.Picture().rgba == picture.rgba) << CTestFolder::TextOf(script);
}

using enum EMaterialTool;
const CKinds kMaterial{Color, Shininess, Transparency};
const CKinds kAll{Color, Shininess, Transparency, Replace, kMove, kDelete};
const CSaved kSaved[] = {
    {"ChessColor", "chess.3ds", {Color}},
    {"ChessTransparency", "chess.3ds", {Transparency}},
    {"KnotMaterial", "knot.3ds", kMaterial, 6},
    {"KnotShininess", "knot.3ds", {Shininess}, 3},
    {"MaterialsMaterial", "materials.3ds", kMaterial, 20},
    {"OrreryMaterial", "orrery.3ds", kMaterial, 21},
    {"ChessReplace", "chess.3ds", {Replace}, 3},
    {"MaterialsMove", "materials.3ds", {kMove}, 9},
    {"OrreryDelete", "orrery.3ds", {kDelete}, 3},
    {"ChessAll", "chess.3ds", kAll, 25},
    {"MaterialsAll", "materials.3ds", kAll, 26},
    {"OrreryAll", "orrery.3ds", kAll, 14},
};
INSTANTIATE_TEST_SUITE_P(All, SavedEditsGLTest, testing::ValuesIn(kSaved), kRowName);

}  // namespace
