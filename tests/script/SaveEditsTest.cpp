// SPDX-License-Identifier: MIT
#include "script/save_edits.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <random>
#include <set>

#include "error_code_of.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "model/edit/CEdited.h"
#include "picture/image_writer.h"
#include "row_name.h"
#include "script/CSceneScript.h"
#include "script/fit_names.h"

namespace {

// --- the same scene --------------------------------------------------------------------------------------

void Add(std::string& to, std::initializer_list<float> numbers) {
    for (const float number : numbers) to += " " + std::to_string(std::bit_cast<std::uint32_t>(number));
}

/** All that is seen of each node, whatever the order of meshes and materials is: places in 64ths, as a move may be in the
 * node or in the mesh, and looks exactly. */
std::multiset<std::string> LookOf(const CPreparedScene& scene) {
    std::multiset<std::string> look;
    for (const CPreparedNode& node : scene.nodes) {
        std::string text = node.name;
        if (node.mesh < 0) continue;
        const CPreparedMesh& mesh = scene.meshes[static_cast<std::size_t>(node.mesh)];
        for (const CPreparedVertex& v : mesh.vertices) {
            const CVec3 at = node.meshToWorld.TransformPoint(v.Position());
            for (const float place : {at.x, at.y, at.z})
                text += " " + std::to_string(std::lround(place * 64));
        }
        std::multiset<std::string> parts;
        for (const CPreparedBatch& batch : mesh.batches) {
            const CPreparedMaterial& m = scene.materials[batch.material];
            std::string part = std::to_string(batch.indexCount);
            for (const CVec3 c : {m.diffuse, m.ambient}) Add(part, {c.x, c.y, c.z});
            Add(part, {m.shininess, m.shininessStrength, m.transparency});
            if (m.texture.HasEffect())
                part += scene.textures[static_cast<std::size_t>(m.texture.texture)].reference;
            parts.insert(part);
        }
        for (const std::string& part : parts) text += "\n  " + part;
        look.insert(text);
    }
    return look;
}

struct CSceneRow {
    const char* name;
    CBytes (*file)();
};
class EditsInScriptTest : public testing::TestWithParam<CSceneRow> {
  protected:
    void SetUp() override {
        std::filesystem::create_directory(m_folder / "maps");
        EXPECT_TRUE(image_codec::WritePng(m_folder / "maps/wood.png", {1, 1, {90, 60, 30, 255}}, false));
        (void)m_folder.Add("m.3ds", "model");
        (void)m_folder.Add("ball.3ds", Scene(Material("Stone", DiffuseColor(9, 9, 9)) + RedCube("Ball"), {}));
    }
    std::size_t Below(std::size_t count) { return m_random() % count; }
    CEdit SomeEdit(CEdited& scene) {
        const std::vector<CPreparedNode>& nodes = scene.At().nodes;
        const std::string node = nodes.empty() ? "" : nodes[Below(nodes.size())].name;
        std::vector<std::string> materials = scene.Edits().MaterialNamesOf(node);
        materials.emplace_back();
        const CMaterialTarget target{Below(4) > 0 ? node : "", materials[Below(materials.size())]};
        const float tenths = static_cast<float>(Below(11)) / 10;
        const auto channel = [&] { return Below(3) == 0 ? 0.0f : static_cast<float>(Below(256)) / 255.0f; };
        const auto number = [&] { return static_cast<float>(Below(100'000)) / 997; };
        const CEdit one[] = {CColorEdit{target, {channel(), channel(), channel()}},
                             CColorEdit{target, {0, 0, 0}},
                             CShininessEdit{target, tenths},
                             CTransparencyEdit{target, tenths},
                             CTextureEdit{target, Below(2) == 0 ? m_folder / "maps/wood.png" : ""},
                             CMoveEdit{node, {number(), number(), -number()}},
                             CRotateEdit{node, {number(), 0, number()}},
                             CReplaceEdit{node, m_folder / "ball.3ds", Below(2) == 0 ? "Ball" : ""},
                             CDeleteEdit{node}};
        return one[Below(std::size(one))];
    }

    CTestFolder m_folder;
    std::mt19937 m_random{11};
};

TEST_P(EditsInScriptTest, GiveTheSameScene) {
    const std::string script = m_folder.Add("s.orv", "[Model]\nPath=m.3ds\n");
    int saved = 0;
    for (int round = 0; round < 150; ++round) {
        CEdited edited(GetParam().file()), again(GetParam().file());
        std::vector<CEdit> log;
        for (std::size_t i = 0, count = Below(12); i < count; ++i) {
            CEdit edit = SomeEdit(edited);
            if (edited.Do(edit)) log.push_back(std::move(edit));
        }
        if (!SaveEdits(script, "Model", log)) continue;
        ++saved;
        auto read = ReadScript(script);
        ASSERT_TRUE(read);
        CScriptScene& scene = read.Value().scenes[0];
        EXPECT_TRUE(scene.notes.empty());
        FitNames(scene.edits, again.At());
        for (const CStatus& status : again.Edits().Apply(scene.edits))
            EXPECT_TRUE(status) << status.Error().Text();
        ASSERT_TRUE(LookOf(again.At()) == LookOf(edited.At())) << CTestFolder::TextOf(script);
    }
    EXPECT_GT(saved, 60) << "most can be said";
}
const CSceneRow kScenes[] = {{"Zoo", ZooFile}, {"Twins", TwinsFile}};
INSTANTIATE_TEST_SUITE_P(All, EditsInScriptTest, testing::ValuesIn(kScenes), kRowName);

// --- the file --------------------------------------------------------------------------------------------

struct CFileRow {
    const char* name;
    std::string before;
    std::vector<CEdit> edits;
    std::string after;
};
class SaveEditsTest : public testing::TestWithParam<CFileRow> {};
const CEdit kRed = CColorEdit{{"Box", "Red"}, {1, 0.5f, 0}};
const std::string kHead = "[Model]\nPath=m\n", kRedLine = "Color=Box>Red|255|128|0;\n";
const CFileRow kFiles[] = {
    {"FormatsOfTheLists",
     kHead,
     {kRed, CShininessEdit{{"Box", ""}, 0.3f}, CTransparencyEdit{{"", "Red"}, 1},
      CMoveEdit{"Box", {1.5f, 0, 1e-6f}}},
     kHead + "MoveNode=Box|1.500|0.000|1e-06;\nTransparency=Red|1.0;\nShininess=Box>|0.3;\n" + kRedLine},
    {"OnlyWhatIsNotEmpty", kHead + "Shininess=Box>|0.3;\n", {kRed}, kHead + kRedLine},
    {"AllElseStays",
     "\xEF\xBB\xBF; mine\r\n\r\n[A]\r\nColor=x|1|2|3;\r\n[ model ]\r\n  path = m ; no comment\r\ncolor = "
     "a|1|1|1;\r\nText=t\r\n\r\n# end\r\n[B]",
     {kRed},
     "\xEF\xBB\xBF; mine\r\n\r\n[A]\r\nColor=x|1|2|3;\r\n[ model ]\r\n  path = m ; no "
     "comment\r\nColor=Box>Red|255|128|0;\r\nText=t\r\n\r\n# end\r\n[B]"},
    {"NoSuchSection", "[A]\nPath=m", {kRed}, "[A]\nPath=m\n\n[Model]\nPath=m.3ds\n" + kRedLine},
    {"WhatNobodyUnderstandsStays",
     kHead + "Texture=Red|gone.png;\nColor=odd;Box>Red|1|1|1;\n",
     {kRed},
     kHead + "Texture=Red|gone.png;\nColor=Box>Red|255|128|0;odd;\n"},
    {"HidesTheTemplates",
     kHead + "Template=t.orv\n",
     {kRed},
     kHead + "Template=t.orv\nShininess=\n" + kRedLine},
    {"BlanksAtTheStart", kHead, {CDeleteEdit{" Box"}}, kHead + "DeleteNode=\" Box;\"\n"},
};
TEST_P(SaveEditsTest, ChangesTheListsAlone) {
    const CTestFolder folder;
    (void)folder.Add("t.orv", "[Model]\nShininess=Box|0.5;\n");
    const std::string script = folder.Add("s.orv", GetParam().before), model = folder.Add("m.3ds", "model");
    (void)folder.Add("m", "model");
    ASSERT_TRUE(SaveEdits(script, "Model", GetParam().edits, model));
    EXPECT_EQ(CTestFolder::TextOf(script), GetParam().after);
    ASSERT_TRUE(SaveEdits(script, "Model", GetParam().edits, model));
    EXPECT_EQ(CTestFolder::TextOf(script), GetParam().after) << "saved again";
}
INSTANTIATE_TEST_SUITE_P(All, SaveEditsTest, testing::ValuesIn(kFiles), kRowName);

TEST(SaveEditsTest, MakesAScript) {
    const CTestFolder folder;
    const std::string model = folder.Add("m.3ds", "model");
    ASSERT_TRUE(SaveEdits(folder / "new.orv", "Model", std::vector{kRed}, model));
    const auto script = ReadScript(folder / "new.orv");
    ASSERT_TRUE(script);
    EXPECT_EQ(file_util_ex::ConvertToUTF8(script.Value().scenes[0].path), model);
    EXPECT_EQ(script.Value().scenes[0].edits.size(), 1u);
}

TEST(SaveEditsTest, UnsayableEditsAreRefusedAndNothingIsWritten) {
    const CTestFolder folder;
    const std::string script = folder.Add("s.orv", "[Model]\nPath=m\n");
    const std::vector<CEdit> unsayable[] = {
        {CDeleteEdit{"a;b"}},
        {CShininessEdit{{"a|b", "m"}, 1}},
        {CShininessEdit{{"a>b", "m"}, 1}},
        {CShininessEdit{{"", "a>b"}, 1}},
        {CDeleteEdit{" "}},
        {kRed, CTextureEdit{{"", "Red"}, "/x.png"}},
        {CRotateEdit{"a", {0, 0, 1}}, CMoveEdit{"b", {1, 0, 0}}},  // each turn before the moves of others
    };
    for (const std::vector<CEdit>& edits : unsayable) {
        EXPECT_EQ(CodeOf(SaveEdits(script, "Model", edits)), EErrorCode::BadArgument);
        EXPECT_EQ(CTestFolder::TextOf(script), "[Model]\nPath=m\n");
    }
}

TEST(SaveEditsTest, KeepsWhatIsNoScript) {
    const CTestFolder folder;
    const std::string binary("MM\0\0", 4), path = folder.Add("b.orv", binary);
    EXPECT_FALSE(SaveEdits(path, "Model", std::vector{kRed}));
    EXPECT_EQ(CTestFolder::TextOf(path), binary);
    ASSERT_EQ(::mkfifo((folder / "pipe.orv").c_str(), 0600), 0);
    EXPECT_FALSE(SaveEdits(folder / "pipe.orv", "Model", std::vector{kRed}));
}

TEST(SaveEditsTest, FollowsLinksToScriptsAlone) {
    const CTestFolder folder;
    const std::string model = folder.Add("m.3ds", "model"), profile = folder.Add("profile", "PATH=/bin\n");
    std::filesystem::create_symlink("profile", folder / "m.orv");
    std::filesystem::create_symlink("gone", folder / "g.orv");
    std::filesystem::create_symlink(folder.Add("other.orv", ""), folder / "o.orv");
    EXPECT_FALSE(SaveEdits(folder / "m.orv", "Model", std::vector{kRed}, model));
    EXPECT_EQ(CTestFolder::TextOf(profile), "PATH=/bin\n");
    EXPECT_FALSE(SaveEdits(folder / "g.orv", "Model", std::vector{kRed}, model));
    EXPECT_FALSE(std::filesystem::exists(folder / "gone"));
    EXPECT_TRUE(SaveEdits(folder / "o.orv", "Model", std::vector{kRed}, model));
    EXPECT_NE(CTestFolder::TextOf(folder / "other.orv"), "");
}

}  // namespace
