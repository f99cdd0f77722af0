// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "picture/image_writer.h"
#include "row_name.h"
#include "script/CSceneScript.h"
#include "session/CSession.h"
#include "session/CSessionStage.h"
#include "settings/CSettings.h"

namespace {

using folder_models::EStep;
using CLoads = std::vector<std::string>;

class CSessionScriptsTest : public testing::Test {
  protected:
    CSessionStage stage;
    CSession& session = stage.session;
    std::set<std::string>& nodes = stage.view.nodes;
    CSettings before = CSettings::Instance();
    ~CSessionScriptsTest() override { CSettings::Instance() = before; }
};

TEST_F(CSessionScriptsTest, ShowsTheModelAsItSays) {
    EXPECT_TRUE(image_codec::WritePng(stage.folder / "b.png", {1, 1, {9, 8, 7, 255}}, false));
    const std::wstring model = stage.Add("m.3ds");
    const std::wstring script = stage.Add(
        "s.orv",
        "[Model]\nPath=M.3ds\nWire=1\nRotate=1\nFullScreen=1\nRenderMode=2\nBkColorR=255\nBkColorG="
        "0\nBkColorB=0\n"
        "Camera=top\nText=Hello\nPosX=1\nPosY=2\nPosZ=3\nScaleX=2\nScaleY=2\nScaleZ=2\nBkGrImage=b.png\n"
        "DeleteNode=a;gone;\nTime=2\n");
    const CScriptScene* told = nullptr;
    int timeMs = 0;
    stage.onOpened = [&](const COpenReport& report) {
        told = report.scene;
        if (report.scene) timeMs = report.scene->timeMs;
    };
    ASSERT_EQ(stage.Open(script), EOpened::Opened);
    EXPECT_EQ(session.Document().origin, EOrigin::Script);
    EXPECT_EQ(session.Document().modelPath, model);
    EXPECT_EQ(stage.title, L"Orbivue - " + script);
    EXPECT_EQ(told, session.ScriptScene());
    EXPECT_EQ(timeMs, 2000);
    const CSceneLook look = stage.view.look;
    EXPECT_TRUE(look.show.wire && look.show.rotate && stage.isFullScreen);
    EXPECT_EQ(look.show.background, (CVec3{1, 0, 0}));
    EXPECT_EQ(look.textureMode, 2);
    EXPECT_EQ(look.caption, L"Hello");
    EXPECT_EQ(look.pivot, (CVec3d{1, 2, 3}));
    EXPECT_EQ(look.scale, (CVec3d{2, 2, 2}));
    ASSERT_TRUE(look.backgroundImage);
    EXPECT_EQ(look.backgroundImage->width, 1);
    EXPECT_EQ(stage.view.camera, "top");
    EXPECT_EQ(nodes, (std::set<std::string>{"b", "c"}));
    EXPECT_EQ(session.ScriptNotes().size(), 1u) << "what the model lacks";
    EXPECT_FALSE(session.Edits().CanUndo() || session.HasUnsavedEdits());
    EXPECT_FALSE(CSettings::Instance().wireFrame || CSettings::Instance().rotate) << "nothing is stored";

    ASSERT_EQ(stage.Open(stage.Add("other.3ds")), EOpened::Opened);
    EXPECT_FALSE(stage.view.look.show.wire || stage.view.look.show.rotate || stage.isFullScreen);
    EXPECT_EQ(stage.view.look.textureMode, 0);
    EXPECT_FALSE(stage.view.look.backgroundImage);
    EXPECT_EQ(told, nullptr);
    EXPECT_TRUE(session.ScriptNotes().empty());
}

TEST_F(CSessionScriptsTest, LeavesTheFullScreenThatTheUserChose) {
    (void)stage.Add("m.3ds");
    stage.Open(stage.Add("s.orv", "[Model]\nPath=m.3ds\nFullScreen=0\n"));
    stage.isFullScreen = true;
    stage.Open(stage.Add("other.3ds"));
    EXPECT_TRUE(stage.isFullScreen);
}

struct CFailure {
    const char* name;
    const char* script;
    const char* reason;
};
class CSessionScriptFailureTest : public testing::TestWithParam<CFailure> {};
const CFailure kFailures[] = {
    {"MissingModel", "[Model]\nPath=gone.3ds\n", "there is no such file"},
    {"NoModel", "[Model]\nText=x\n", "the script names no model"},
    {"BadModel", "[Model]\nPath=bad.3ds\n", "bad"},
    {"BadObj", "[Model]\nPath=bad.obj\n", "The file has no faces, lines or points"}};
TEST_P(CSessionScriptFailureTest, IsShownAsAFailedOpening) {
    CSessionStage stage;
    stage.Open(stage.Add("old.3ds"));
    (void)stage.Add("bad.3ds", "bad");
    (void)stage.Add("bad.obj", "nothing");
    const std::wstring script = stage.Add("s.orv", GetParam().script);
    EXPECT_EQ(stage.Open(script), EOpened::Failed);
    EXPECT_EQ(stage.title, L"Orbivue - " + script + L" - File open failed");
    EXPECT_EQ(stage.view.shown, L"") << "the view tells why";
    EXPECT_EQ(stage.reports.back().error.message, GetParam().reason);
    EXPECT_EQ(stage.session.Document().path, script);
    (void)stage.Add("gone.3ds");
    (void)stage.Add("s.orv", "[Model]\nPath=gone.3ds\n");
    stage.session.Reload();
    EXPECT_TRUE(stage.session.Document().isOpen) << "F5 tries again";
}
INSTANTIATE_TEST_SUITE_P(All, CSessionScriptFailureTest, testing::ValuesIn(kFailures), kRowName);

TEST_F(CSessionScriptsTest, StepsThroughScenes) {
    (void)stage.Add("m.3ds");
    (void)stage.Add("n.3ds");
    stage.Open(stage.Add("s.orv",
                         "[A]\nPath=m.3ds\nDeleteNode=a;\nWire=1\n[B]\nPath=m.3ds\nDeleteNode=b;\n[C]\nPath="
                         "n.3ds\n[D]\nPath=gone.3ds\n"));
    EXPECT_EQ(session.SceneCount(), 4u);
    EXPECT_TRUE(session.StepScene(EStep::Next));
    EXPECT_EQ(nodes, (std::set<std::string>{"a", "c"}));
    EXPECT_FALSE(stage.view.look.show.wire);
    EXPECT_EQ(stage.view.loads, (CLoads{"file", "again"})) << "a model is read once";
    EXPECT_TRUE(session.StepScene(EStep::Next));
    EXPECT_EQ(nodes.size(), 3u);
    EXPECT_TRUE(session.StepScene(EStep::Next));
    EXPECT_FALSE(session.Document().isOpen);
    EXPECT_TRUE(session.StepScene(EStep::Next)) << "past what is missing, in a circle";
    EXPECT_EQ(session.SceneIndex(), 0u);
    EXPECT_TRUE(session.StepScene(EStep::Previous));
    EXPECT_EQ(session.SceneIndex(), 3u);
    EXPECT_EQ(stage.reports.size(), 6u);
    stage.Open(stage.Add("one.orv", "[Model]\nPath=m.3ds\n"));
    EXPECT_FALSE(session.StepScene(EStep::Next));
}

TEST_F(CSessionScriptsTest, ReadsAgainWhatChanged) {
    (void)stage.Add("m.3ds");
    (void)stage.Add("n.3ds");
    const std::wstring script = stage.Add("s.orv", "[A]\nPath=m.3ds\nDeleteNode=a;\n[B]\nPath=m.3ds\n");
    stage.Open(script);
    session.Apply({CDeleteEdit{"b"}}, L"b");
    EXPECT_EQ(nodes.size(), 1u);
    session.Reload();
    EXPECT_EQ(nodes, (std::set<std::string>{"b", "c"})) << "the script's edits are made again";
    (void)stage.Add("s.orv", "[New]\nPath=m.3ds\n[A]\nPath=m.3ds\nText=hi\n");
    session.Reload();
    EXPECT_EQ(session.SceneIndex(), 1u) << "the section of that name";
    EXPECT_EQ(nodes.size(), 3u);
    EXPECT_EQ(stage.view.look.caption, L"hi");
    EXPECT_EQ(stage.view.loads, (CLoads{"file", "reload", "reload"}));
    (void)stage.Add("s.orv", "[A]\nPath=n.3ds\n");
    session.Reload();
    EXPECT_EQ(stage.Shown(), L"n.3ds");
    (void)stage.Add("s.orv", "[A]\nPath=n.3ds\nText=changed\n");
    EXPECT_EQ(stage.Open(script), EOpened::Opened) << "not the same any more";
    EXPECT_EQ(stage.Open(script), EOpened::AlreadyShown);
    (void)stage.Add("s.orv", "nothing");
    session.Reload();
    EXPECT_EQ(stage.boxes.size(), 1u);
    EXPECT_EQ(stage.Shown(), L"n.3ds") << "what is shown stays";
}

TEST_F(CSessionScriptsTest, UndoesOnlyWhatTheUserDid) {
    (void)stage.Add("m.3ds");
    stage.Open(stage.Add("s.orv", "[A]\nPath=m.3ds\nDeleteNode=a;\n"));
    session.Apply({CDeleteEdit{"b"}}, L"b");
    session.Undo();
    session.Undo();
    EXPECT_EQ(nodes, (std::set<std::string>{"b", "c"}));
    EXPECT_EQ(session.Edits().Base().size(), 1u);
}

}  // namespace
