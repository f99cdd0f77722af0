// SPDX-License-Identifier: MIT
#include "script/CSceneScript.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <limits>

#include "error_code_of.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "row_name.h"

namespace {

using file_util_ex::PathFromBytes;

std::string NotesOf(const CScriptScene& scene) {
    std::string text;
    for (const CSceneNote& note : scene.notes) text += note.Text() + "\n";
    return text;
}

/** A script beside the model "m.3ds". */
class CScriptBeside {
  public:
    CScriptBeside() { (void)m_folder.Add("m.3ds", "model"); }
    CResult<CSceneScript> Read(const std::string& text) { return ReadScript(m_folder.Add("a.orv", text)); }
    /** The one scene of a script that has these lines beside its model. */
    CScriptScene SceneOf(const std::string& lines) {
        auto script = Read("[Model]\nPath=m.3ds\n" + lines);
        EXPECT_TRUE(script) << lines;
        return script ? script.Value().scenes.at(0) : CScriptScene();
    }
    CTestFolder& Folder() { return m_folder; }

  private:
    CTestFolder m_folder;
};

// --- numbers ---------------------------------------------------------------------------------------------

struct CNumberRow {
    const char* name;
    const char* line;
    int timeMs = 0, loop = 0;
    bool isNoted = false;
};
class ScriptNumberTest : public testing::TestWithParam<CNumberRow> {};
constexpr int kMost = std::numeric_limits<int>::max();
const CNumberRow kNumbers[] = {
    {"HalvesAwayFromZero", "Time=1.2345", 1235},
    {"Negative", "Time=-2.5", -2500},
    {"LeadingBlanksAndGarbage", "Time=\" \t3.5 seconds\"", 3500},
    {"NoNumber", "Time=soon", 0},
    {"Hexadecimal", "Time=0x1p1", 2000},
    {"NaN", "Time=nan", 0, 0, true},
    {"Infinite", "Time=-inf", std::numeric_limits<int>::min(), 0, true},
    {"Absurd", "Time=1e300", kMost, 0, true},
    {"LoopZero", "Loop=0", 0, 0},
    {"LoopThree", "Loop=3", 0, 2},
    {"LoopHexadecimal", "Loop=0x10", 0, 15},
    {"LoopOctal", "Loop= 010", 0, 7},
    {"LoopNegative", "Loop=-0x10", 0, 0},
    {"LoopTwoSigns", "Loop=--5", 0, 0},
    {"LoopHuge", "Loop=99999999999999999999", 0, kMost - 1},
};
TEST_P(ScriptNumberTest, IsReadAsTheLibraryOfCDoes) {
    const CScriptScene scene = CScriptBeside().SceneOf(GetParam().line);
    EXPECT_EQ(scene.timeMs, GetParam().timeMs);
    EXPECT_EQ(scene.loop, GetParam().loop);
    EXPECT_EQ(!scene.notes.empty(), GetParam().isNoted) << NotesOf(scene);
}
INSTANTIATE_TEST_SUITE_P(All, ScriptNumberTest, testing::ValuesIn(kNumbers), kRowName);

TEST(ReadScriptTest, ReadsWhatIsWholeAndLeavesTheRest) {
    CScriptBeside beside;
    const CScriptScene none = beside.SceneOf(
        "BkColorR=10\nBkColorG=20\nPosX=1\nPosY=2\nScaleX=0\nScaleY=1\nScaleZ=1\nWire=2\nRotate=x\n");
    EXPECT_FALSE(none.background || none.pivot || none.scale || none.wire || none.rotate || none.fullScreen);
    const CScriptScene all = beside.SceneOf(
        "BkColorR=300\nBkColorG=0\nBkColorB=51\nPosX=1\nPosY=-2e1\nPosZ=0x10\nScaleX=-1\nScaleY=2\nScaleZ=0."
        "5\n"
        "Wire=1\nRotate=0\nFullScreen=7\nRenderMode=-3\n");
    EXPECT_EQ(all.background, (CVec3{1, 0, 0.2f}));
    EXPECT_EQ(all.pivot, (CVec3d{1, -20, 16}));
    EXPECT_EQ(all.scale, (CVec3d{-1, 2, 0.5}));
    EXPECT_EQ(all.wire, true);
    EXPECT_EQ(all.rotate, false);
    EXPECT_EQ(all.fullScreen, true);
    EXPECT_EQ(all.renderMode, -3);
    for (const char* bad :
         {"ScaleX=inf\nScaleY=1\nScaleZ=1", "PosX=nan\nPosY=0\nPosZ=0", "ScaleX=1e9\nScaleY=1\nScaleZ=1"}) {
        const CScriptScene scene = beside.SceneOf(bad);
        EXPECT_FALSE(scene.pivot || scene.scale) << bad;
        EXPECT_EQ(scene.notes.size(), 1u) << bad;
    }
}

// --- lists -----------------------------------------------------------------------------------------------

TEST(ReadScriptTest, AppliesListsInTheirOrder) {
    CScriptBeside beside;
    (void)beside.Folder().Add("wood.png", "picture");
    const CScriptScene scene = beside.SceneOf(
        "Color=Red|255|0|51;Box>Red|1|2\nShininess=Box>|0x1p-1\nTransparency=Red|7;Red|nan; ;|1;\n"
        "Texture=Red|wood.png;Blue|;\nDeleteNode=Lamp;\nRotateNode=Box|0|0|90;Box|90|0|0;\n"
        "MoveNode=Box|1|2;Box|1|2|3;Box|inf|0|0\nReplaceNode=Box|M.3DS|Ball;Cup|none.3ds;\n");
    ASSERT_EQ(scene.edits.size(), 10u) << NotesOf(scene);
    const auto& replace = std::get<CReplaceEdit>(scene.edits[0]);
    EXPECT_EQ(replace.path, beside.Folder() / "m.3ds");
    EXPECT_EQ(replace.newNode, "Ball");
    EXPECT_EQ(std::get<CMoveEdit>(scene.edits[1]).offset, (CVec3{1, 2, 3}));
    EXPECT_EQ(std::get<CRotateEdit>(scene.edits[3]).anglesDeg, (CVec3{90, 0, 0})) << "each turn counts";
    EXPECT_EQ(std::get<CDeleteEdit>(scene.edits[4]).node, "Lamp");
    EXPECT_EQ(std::get<CTextureEdit>(scene.edits[5]).imagePath, beside.Folder() / "wood.png");
    EXPECT_EQ(std::get<CTextureEdit>(scene.edits[6]).imagePath, "");
    EXPECT_EQ(std::get<CTransparencyEdit>(scene.edits[7]).value, 1);
    EXPECT_EQ(std::get<CShininessEdit>(scene.edits[8]).target, (CMaterialTarget{"Box", ""}));
    EXPECT_EQ(std::get<CColorEdit>(scene.edits[9]).color, (CVec3{1, 0, 0.2f}));
    EXPECT_EQ(scene.notes.size(), 6u) << NotesOf(scene);
}

// --- texts -----------------------------------------------------------------------------------------------

TEST(ReadScriptTest, TextsAreReadAsPeopleWroteThem) {
    for (const auto& [bytes, text] : {std::pair{"Gr\u00FC\u00DFe", L"Gr\u00FC\u00DFe"},
                                      {"Gr\xFC\xDF aus K\xF6ln", L"Gr\u00FC\u00DF aus K\u00F6ln"},
                                      {"Caf\x82", L"Caf\u00E9"},
                                      {"\xCA\xF3\xE1", L"\u041A\u0443\u0431"},
                                      {"\x8A\xA0\xA4", L"\u041A\u0430\u0434"},
                                      {"$\"two\\nlines\"", L"two\nlines"},
                                      {"\" blanks \"", L" blanks "}})
        EXPECT_EQ(CScriptBeside().SceneOf(std::string("Text=") + bytes).text, text);
}

TEST(ReadScriptTest, ReadsUtf16AndMarks) {
    CScriptBeside beside;
    const std::string text = "[Model]\r\nPath=m.3ds\r\nText=Hi\r\n";
    std::string wide("\xFF\xFE", 2);
    for (const char c : text) wide += {c, '\0'};
    for (const std::string& bytes : {"\xEF\xBB\xBF" + text, wide}) {
        const auto script = beside.Read(bytes);
        ASSERT_TRUE(script);
        EXPECT_EQ(script.Value().scenes[0].text, L"Hi");
    }
}

// --- templates and presentations -------------------------------------------------------------------------

TEST(ReadScriptTest, TakesWhatItLacksFromItsTemplate) {
    CScriptBeside beside;
    CTestFolder shared;
    (void)shared.Add("back.png", "picture");
    (void)shared.Add("all.orv",
                     "[Model]\nText=base\nTime=2\nBkGrImage=back.png\nColor=Red|1|2|3;\nTemplate=<NOTSET>\n["
                     "Two]\nText=for two\n");
    const auto script =
        beside.Read("[Model]\nPath=m.3ds\nText=own\nColor=\nTemplate=" + (shared / "all.orv") +
                    "\n[Two]\nPath=m.3ds\nTemplate=" + (shared / "all.orv") + "\n");
    ASSERT_TRUE(script);
    ASSERT_EQ(script.Value().scenes.size(), 2u);
    const CScriptScene& scene = script.Value().scenes[0];
    EXPECT_EQ(scene.text, L"own");
    EXPECT_EQ(scene.timeMs, 2000);
    EXPECT_EQ(scene.backgroundImage, PathFromBytes(shared / "back.png")) << "beside the template";
    EXPECT_TRUE(scene.edits.empty()) << "an empty list is a list";
    EXPECT_EQ(script.Value().scenes[1].text, L"for two");
    EXPECT_EQ(script.Value().scenes[1].timeMs, 0);
}

std::string Repeated(std::size_t count, const std::string& text) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

TEST(ReadScriptTest, LetsNoTemplateMultiplyWhatItCosts) {
    CScriptBeside beside;
    (void)beside.Folder().Add("lists.orv", "[Model]\nMoveNode=" + Repeated(50'000, "Box|1|0|0;") +
                                               "\nColor=" + Repeated(50'000, "Red|1|2|3;") + "\n");
    std::string sections;
    for (int i = 0; i < 500; ++i) sections += "[" + std::to_string(i) + "]\nPath=m.3ds\nTemplate=lists.orv\n";
    const auto script = beside.Read(sections);
    ASSERT_TRUE(script);
    std::size_t edits = 0;
    for (const CScriptScene& scene : script.Value().scenes) edits += scene.edits.size();
    EXPECT_GT(edits, 0u);
    EXPECT_LT(edits, 200'000u);
    EXPECT_EQ(script.Value().notes.size(), 1u);
}

TEST(ReadScriptTest, ReadsNoTemplatesWithoutEnd) {
    CScriptBeside beside;
    std::string sections;
    for (const std::string name : {"one", "two", "three"}) {
        (void)beside.Folder().Add(name + ".orv", "[Model]\nTime=2\n" + Repeated(30'000, ";2345\n"));
        sections += "[" + name + "]\nPath=m.3ds\nTemplate=" + name + ".orv\n";
    }
    const auto script = beside.Read(sections);
    ASSERT_TRUE(script);
    ASSERT_EQ(script.Value().scenes.size(), 3u);
    EXPECT_EQ(script.Value().scenes[0].timeMs, 2000);
    EXPECT_EQ(script.Value().scenes[2].timeMs, 0);
    EXPECT_EQ(script.Value().files.size(), 2u);  // the script and what was read
}

TEST(ReadScriptTest, FollowsLongPathsOnlyForAWhile) {
    CScriptBeside beside;
    (void)beside.Folder().Add("b.3ds", "model");
    const std::string path = "C:" + Repeated(1'000, "\\d") + "\\b.3ds";
    std::string entries;
    for (int i = 0; i < 90; ++i) entries += "Box" + std::to_string(i) + "|" + path + ";";
    EXPECT_EQ(beside.SceneOf("ReplaceNode=Box|" + path + ";").edits.size(), 1u);
    EXPECT_LT(beside.SceneOf("ReplaceNode=" + entries).edits.size(), 90u);
}

TEST(ReadScriptTest, EndsCirclesAndLongChains) {
    CScriptBeside beside;
    const auto circle = beside.Read("[Model]\nPath=m.3ds\nTemplate=a.orv\n");
    ASSERT_TRUE(circle);
    EXPECT_EQ(circle.Value().notes.size(), 1u);
    for (int i = 0; i < 40; ++i) {
        const std::string text =
            "[Model]\nTemplate=" + std::to_string(i + 1) + ".orv\nTime=" + std::to_string(i == 39);
        (void)beside.Folder().Add(std::to_string(i) + ".orv", text);
    }
    const auto chain = beside.Read("[Model]\nPath=m.3ds\nTemplate=0.orv\n");
    ASSERT_TRUE(chain);
    EXPECT_EQ(chain.Value().notes.size(), 1u);
    EXPECT_EQ(chain.Value().scenes[0].timeMs, 0);
}

TEST(ReadScriptTest, MakesASceneOfEachSectionWithAModel) {
    CScriptBeside beside;
    const auto script =
        beside.Read("[Notes]\nAuthor=me\n[B]\nPath=m.3ds\n[A]\nPath=gone.3ds\n[Empty]\nPath=\n");
    ASSERT_TRUE(script);
    ASSERT_EQ(script.Value().scenes.size(), 2u);
    EXPECT_EQ(script.Value().scenes[0].section, "B");
    EXPECT_EQ(script.Value().scenes[1].path, PathFromBytes(beside.Folder() / "gone.3ds"));
}

// --- what is no script -----------------------------------------------------------------------------------

TEST(ReadScriptTest, WhatIsNoScriptIsRefused) {
    const std::pair<std::string, EErrorCode> texts[] = {
        {"", EErrorCode::BadFormat},
        {std::string("MM\0\0\0\x4D[Model]\nPath=m.3ds", 24), EErrorCode::BadFormat},
        {"[Model]\nText=x\n", EErrorCode::BadFormat},
        {"[Model]\nPath=m.3ds\n" + std::string(300'000, '\n'), EErrorCode::TooLarge},
        {"[Model]\nPath=m.3ds\n" + std::string(17 << 20, ';'), EErrorCode::TooLarge}};
    for (const auto& [text, code] : texts) {
        EXPECT_EQ(CodeOf(CScriptBeside().Read(text)), code);
    }
}

TEST(ReadScriptTest, OpensNothingThatIsNoFile) {
    CScriptBeside beside;
    const std::string pipe = beside.Folder() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(ReadScript(pipe));
    EXPECT_FALSE(ReadScript("/dev/zero"));
    EXPECT_FALSE(ReadScript(beside.Folder().Path()));
    const CScriptScene scene = beside.SceneOf(
        "Path=pipe\nBkGrImage=/dev/zero\nIcon=pipe\nTemplate=pipe\nTexture=Red|pipe;\nReplaceNode=Box|pipe;");
    EXPECT_TRUE(scene.backgroundImage.empty() && scene.icon.empty() && scene.edits.empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    std::filesystem::create_symlink("a.orv", beside.Folder() / "link.orv");
    EXPECT_TRUE(ReadScript(beside.Folder() / "link.orv"));
}

TEST(ReadScriptTest, TakesTimeInProportion) {
    CScriptBeside beside;
    std::string lists[] = {"Color=", "Texture=", "ReplaceNode=", "MoveNode="};
    for (int i = 0; i < 100'000; ++i) {
        const std::string n = std::to_string(i);
        lists[0] += n + ">m|" + n + ";";
        lists[1] += n + "|" + n + ".png;";
        lists[2] += n + "|" + n + ".3ds;";
        lists[3] += n + "|1|2|3;";
    }
    for (const std::string& list : lists) {
        const CScriptScene scene = beside.SceneOf(list);
        EXPECT_LE(scene.edits.size(), 10'000u);
        EXPECT_LE(scene.notes.size(), 210u);
    }
}

}  // namespace
