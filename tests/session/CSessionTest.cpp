// SPDX-License-Identifier: MIT
#include "session/CSession.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "row_name.h"
#include "session/CSessionStage.h"

namespace {

using folder_models::EStep;
using CLoads = std::vector<std::string>;

constexpr char kTriangle[] = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

class CSessionTest : public testing::Test {
  protected:
    CSessionStage stage;
    CSession& session = stage.session;
};

/** One opening after "old.3ds" was opened, in a folder with two models that can be stepped to. */
struct CRoad {
    const char* name;
    const char* file;
    const char* text;
    EOpened result;
    const char* titleEnd;
    const char* shown;
    CLoads loads;
    std::size_t recent;
};

class CSessionRoadTest : public testing::TestWithParam<CRoad> {};

TEST_P(CSessionRoadTest, IsTheSameForAll) {
    const CRoad& road = GetParam();
    CSessionStage stage;
    const std::wstring old = stage.Add("old.3ds");
    ASSERT_EQ(stage.Open(old), EOpened::Opened);
    stage.view.loads.clear();
    stage.reports.clear();
    const std::wstring path = road.text ? stage.Add(road.file, road.text)
                                        : file_util_ex::ConvertFromUTF8W(stage.folder / road.file);
    EXPECT_EQ(stage.Open(path), road.result);
    ASSERT_EQ(stage.reports.size(), 1u);
    EXPECT_EQ(stage.reports[0].result, road.result);
    EXPECT_EQ(stage.reports[0].folderModels, stage.session.FolderModels());
    EXPECT_EQ(stage.reports[0].error.message.empty(), road.result != EOpened::Failed);
    EXPECT_TRUE(stage.title.ends_with(file_util_ex::ConvertFromUTF8W(road.titleEnd)))
        << testing::PrintToString(stage.title);
    EXPECT_EQ(stage.Shown(), file_util_ex::ConvertFromUTF8W(road.shown));
    EXPECT_EQ(stage.view.loads, road.loads);
    EXPECT_EQ(stage.recent.Files().size(), road.recent);
    EXPECT_EQ(stage.session.Document().path, path);
    EXPECT_EQ(stage.session.Document().isOpen, road.result != EOpened::Failed);
    EXPECT_EQ(stage.busy, 0);
    EXPECT_TRUE(stage.boxes.empty());
    if (stage.Shown() != L"old.3ds") return;
    EXPECT_EQ(stage.Open(old), EOpened::AlreadyShown) << "one comes back to what stayed";
    EXPECT_EQ(stage.view.loads, road.loads);
}

const CRoad kRoads[] = {
    {"Model", "new.3ds", "good", EOpened::Opened, "/new.3ds", "new.3ds", {"file"}, 2},
    {"Repeat", "old.3ds", "good", EOpened::AlreadyShown, "/old.3ds", "old.3ds", {}, 1},
    {"BadModel", "new.3ds", "bad", EOpened::Failed, "/new.3ds - File open failed", "", {"file"}, 1},
    {"Missing", "new.3ds", nullptr, EOpened::Failed, "/new.3ds - File open failed", "", {"file"}, 1},
    {"Obj", "new.obj", kTriangle, EOpened::Opened, "/old.3ds", "new.obj", {"struct"}, 2},
    // What cannot be converted is reported nowhere, and what was shown stays under its own title.
    {"BadObj", "new.obj", "nothing", EOpened::Failed, "/old.3ds", "old.3ds", {}, 1},
    {"UpperCaseObj", "new.OBJ", "bad", EOpened::Failed, "/new.OBJ - File open failed", "", {"file"}, 1},
};
INSTANTIATE_TEST_SUITE_P(All, CSessionRoadTest, testing::ValuesIn(kRoads), kRowName);

TEST_F(CSessionTest, OpensAgainForAnotherScript) {
    constexpr char kScript[] = "[Model]\nPath=m.3ds\n";
    const std::wstring model = stage.Add("m.3ds"), first = stage.Add("a.orv", kScript),
                       second = stage.Add("b.orv", kScript);
    EXPECT_EQ(stage.Open(first), EOpened::Opened);
    EXPECT_EQ(stage.Open(first), EOpened::AlreadyShown);
    EXPECT_EQ(stage.Open(second), EOpened::Opened);
    EXPECT_EQ(stage.Open(model), EOpened::Opened);
    EXPECT_EQ(stage.view.loads.size(), 3u);
    EXPECT_EQ(stage.recent.Files(), (std::vector<std::wstring>{model, second, first}));
}

TEST_F(CSessionTest, OpensWhatIsInMemory) {
    const std::wstring model = stage.Add("m.3ds");
    stage.Open(model);
    const auto request = [](const std::string& bytes) {
        return COpenRequest::OfMemory(EOrigin::Download, L"m.3ds", {{bytes.begin(), bytes.end()}, {}});
    };
    EXPECT_EQ(session.Open(request("good")), EOpened::Opened);
    EXPECT_EQ(session.Open(request("good")), EOpened::Opened);
    EXPECT_EQ(stage.title, L"Orbivue - m.3ds");
    EXPECT_EQ(session.FolderModels(), 0u);
    session.Reload();
    session.Step(EStep::Next);
    EXPECT_EQ(stage.reports.size(), 3u) << "there is no file to read again, and no folder";
    // It has the name of a file that lies here, and that is none of its.
    std::filesystem::current_path(stage.folder.Path());
    EXPECT_TRUE(session.DeleteFile());
    EXPECT_TRUE(file_util_ex::DoesFileExist(model));
    EXPECT_EQ(session.Open(request("bad")), EOpened::Failed);
    EXPECT_EQ(stage.title, L"Orbivue - m.3ds - File open failed");
    EXPECT_EQ(stage.recent.Files(), std::vector<std::wstring>{model});
}

TEST_F(CSessionTest, TakesAReadySceneOnlyWhileItsFileIsTheSame) {
    const std::wstring model = stage.Add("m.obj", kTriangle), other = stage.Add("o.3ds");
    const auto ready = [&] {
        CJobProgress progress;
        COpenRequest request = COpenRequest::OfFile(model);
        request.ready = std::make_shared<CReadyScene>(LoadReadyScene(model, progress).Value());
        return request;
    };
    EXPECT_EQ(session.Open(ready()), EOpened::Opened);
    EXPECT_EQ(session.Open(ready()), EOpened::AlreadyShown);
    stage.Open(other);
    const COpenRequest stale = ready();
    (void)stage.Add("m.obj", "v 0 0 0\nv 2 0 0\nv 0 2 0\nv 1 1 1\nf 1 2 3\n");
    EXPECT_EQ(session.Open(stale), EOpened::Opened);
    EXPECT_EQ(stage.view.loads, (CLoads{"ready", "file", "struct"}));
}

TEST_F(CSessionTest, OpensTheFirstModelOfAFolder) {
    const std::wstring folder = file_util_ex::ConvertFromUTF8W(stage.folder.Path());
    EXPECT_EQ(session.OpenFileOrFolder(folder), EOpened::Failed);
    EXPECT_EQ(stage.boxes, std::vector<std::wstring>{L"There is no model in the folder " + folder + L"."});
    (void)stage.Add("b.3ds");
    (void)stage.Add("a.3ds");
    EXPECT_EQ(session.OpenFileOrFolder(folder), EOpened::Opened);
    EXPECT_EQ(stage.Shown(), L"a.3ds");
}

TEST_F(CSessionTest, AGoneRecentFileFailsAsAnyOpenDoes) {
    const std::wstring gone = stage.Add("a.3ds"), other = stage.Add("b.3ds");
    stage.Open(gone);
    stage.Open(other);
    std::filesystem::remove(stage.folder / "a.3ds");
    EXPECT_EQ(session.OpenRecent(1), EOpened::Failed);
    EXPECT_EQ(stage.title, L"Orbivue - " + gone + L" - File open failed");
    EXPECT_EQ(stage.Shown(), L"");
    EXPECT_EQ(stage.recent.Files(), std::vector<std::wstring>{other});
    EXPECT_EQ(session.OpenRecent(7), EOpened::Failed);
}

TEST_F(CSessionTest, ReloadKeepsWhatIsShownOrTriesAgain) {
    const std::wstring path = stage.Add("a.3ds");
    stage.Open(path);
    session.DeleteNode("b");
    (void)stage.Add("a.3ds", "bad");
    session.Reload();
    EXPECT_EQ(stage.Shown(), L"a.3ds");
    EXPECT_TRUE(session.Document().isOpen && session.Edits().CanUndo());
    EXPECT_EQ(stage.boxes.size(), 1u);
    EXPECT_EQ(stage.reports.back().result, EOpened::Failed);
    (void)stage.Add("a.3ds", "good");
    session.Reload();
    EXPECT_EQ(stage.reports.back().result, EOpened::Opened);
    EXPECT_TRUE(stage.reports.back().isReload);
    EXPECT_FALSE(session.Edits().CanUndo());

    const std::wstring late = stage.Add("b.3ds", "bad");
    stage.Open(late);
    (void)stage.Add("b.3ds", "good");
    session.Reload();
    EXPECT_EQ(stage.title, L"Orbivue - " + late);
    EXPECT_EQ(stage.view.loads, (CLoads{"file", "reload", "reload", "file", "file"}));
    EXPECT_EQ(stage.reports.size(), 5u);
}

TEST_F(CSessionTest, DeletesAndShowsTheNeighbour) {
    const std::wstring b = stage.Add("b.3ds");
    for (const char* name : {"a.3ds", "c.3ds"}) (void)stage.Add(name);
    stage.Open(b);
    for (const wchar_t* next : {L"c.3ds", L"a.3ds", L""}) {
        EXPECT_TRUE(session.DeleteFile());
        EXPECT_EQ(stage.Shown(), next);
    }
    EXPECT_FALSE(file_util_ex::DoesFileExist(b));
    EXPECT_EQ(stage.title, L"Orbivue");
    EXPECT_FALSE(session.Document().isOpen || session.Document().HasFile());
    EXPECT_TRUE(stage.recent.Files().empty());
}

TEST_F(CSessionTest, TellsWhyAFileCannotBeDeleted) {
    const std::wstring a = stage.Add("a.3ds");
    (void)stage.Add("b.3ds");
    stage.Open(a);
    // Something that no unlink removes has come in its place.
    std::filesystem::remove(stage.folder / "a.3ds");
    std::filesystem::create_directory(stage.folder / "a.3ds");
    EXPECT_EQ(session.DeleteFile().Error().where, stage.folder / "a.3ds");
    EXPECT_EQ(stage.Shown(), L"") << "nor is the next one opened";
    EXPECT_EQ(stage.recent.Files(), std::vector<std::wstring>{a});
}

// --- turns -----------------------------------------------------------------------------------------------

TEST_F(CSessionTest, KeepsTheNewestRequestWhileBusy) {
    const std::wstring a = stage.Add("a.3ds"), b = stage.Add("b.3ds"), c = stage.Add("c.3ds");
    // A timer goes off in the midst of an opening, and a file is dropped.
    stage.view.whileLoading = [&] {
        EXPECT_EQ(stage.Open(b), EOpened::Waits);
        session.Step(EStep::Next);
        EXPECT_EQ(session.OpenFileOrFolder(c), EOpened::Waits);
    };
    EXPECT_EQ(stage.Open(a), EOpened::Opened);
    EXPECT_EQ(stage.Shown(), L"a.3ds");
    stage.ServeEvents();
    EXPECT_EQ(stage.Shown(), L"c.3ds");
    EXPECT_EQ(stage.reports.size(), 2u);
}

TEST_F(CSessionTest, AStepThatWaitedStartsFromWhatIsOpenThen) {
    for (const char* name : {"c.3ds", "b.3ds", "a.3ds"}) stage.Open(stage.Add(name));
    {
        const CTurns::CHold question(session.Turns());
        session.Step(EStep::Next);
        session.Reload();
        session.Step(EStep::Next);
        EXPECT_TRUE(session.DeleteFile());
        EXPECT_EQ(stage.Shown(), L"b.3ds");
    }
    stage.ServeEvents();
    EXPECT_EQ(stage.Shown(), L"c.3ds");
}

TEST_F(CSessionTest, WhatIsChosenLaterReplacesWhatWaited) {
    const std::wstring a = stage.Add("a.3ds"), b = stage.Add("b.3ds");
    {
        const CTurns::CHold dialog(session.Turns());
        stage.Open(a);
    }
    stage.Open(b);
    stage.ServeEvents();
    EXPECT_EQ(stage.Shown(), L"b.3ds");
    EXPECT_EQ(stage.reports.size(), 1u);
}

TEST_F(CSessionTest, ClosingWaitsAndGoesFirst) {
    EXPECT_TRUE(session.MayClose());
    {
        const CTurns::CHold dialog(session.Turns());
        const CTurns::CHold question(session.Turns());
        EXPECT_FALSE(session.MayClose());
        stage.Open(stage.Add("a.3ds"));
        session.RunWaiting();
        EXPECT_EQ(stage.closings, 0);
    }
    stage.ServeEvents();
    EXPECT_EQ(stage.closings, 1);
    EXPECT_TRUE(stage.reports.empty());
}

TEST_F(CSessionTest, AListenerMayAskForTheNextModel) {
    const std::wstring a = stage.Add("a.3ds"), b = stage.Add("b.3ds");
    stage.onOpened = [&](const COpenReport&) {
        if (stage.reports.size() < 3) stage.Open(b);
    };
    stage.Open(a);
    stage.ServeEvents();
    ASSERT_EQ(stage.reports.size(), 3u);
    EXPECT_EQ(stage.reports[2].result, EOpened::AlreadyShown);
}

// --- edits -----------------------------------------------------------------------------------------------

TEST_F(CSessionTest, UndoesAndRedoesSteps) {
    stage.Open(stage.Add("a.3ds"));
    session.DeleteNode("a");
    EXPECT_EQ(stage.messages.back(), L"The object a was removed. Ctrl+Z brings it back.");
    const std::vector<CStatus> answers =
        session.Apply({CDeleteEdit{"b"}, CDeleteEdit{"nothing"}, CDeleteEdit{"c"}}, L"two");
    EXPECT_TRUE(answers[0] && !answers[1] && answers[2]);
    EXPECT_TRUE(stage.view.nodes.empty());
    session.Undo();
    EXPECT_EQ(stage.view.nodes, (std::set<std::string>{"b", "c"}));
    EXPECT_EQ(stage.messages.back(), L"Undone: two");
    session.Redo();
    EXPECT_TRUE(stage.view.nodes.empty());
    session.Undo();
    session.Undo();
    EXPECT_EQ(stage.view.nodes.size(), 3u);
    EXPECT_FALSE(session.Edits().CanUndo());
    session.DeleteNode("c");
    EXPECT_FALSE(session.Edits().CanRedo()) << "something else was done meanwhile";
    EXPECT_EQ(stage.changes, 7);
    // What fails as a whole is no step.
    session.DeleteNode("nothing");
    EXPECT_EQ(session.Edits().Done().size(), 1u);
    session.Open(COpenRequest::OfFile(stage.Add("b.3ds")));
    EXPECT_FALSE(session.Edits().CanUndo()) << "they were another scene's";
}

TEST_F(CSessionTest, RefusesEditsOfAModelInUse) {
    stage.Open(stage.Add("a.3ds"));
    session.DeleteNode("a");
    const CTurns::CHold exporting(session.Turns());
    session.DeleteNode("b");
    session.Undo();
    EXPECT_EQ(stage.view.nodes, (std::set<std::string>{"b", "c"}));
}

TEST_F(CSessionTest, AmendsTheLastStepInItsPlace) {
    stage.Open(stage.Add("a.3ds"));
    const auto transparency = [](const char* node, float value) {
        return CTransparencyEdit{{node, {}}, value};
    };
    session.Apply({transparency("b", 0.5f)}, L"before");
    session.Apply({transparency("a", 0.1f)}, L"slide");
    const std::uint64_t first = session.Edits().State();
    const int told = stage.changes;
    EXPECT_TRUE(session.Amend(first, {transparency("a", 0.2f)}).at(0));
    const std::uint64_t second = session.Edits().State();
    EXPECT_TRUE(session.Amend(first, {transparency("a", 0.9f)}).empty()) << "it is that no more";
    EXPECT_FALSE(session.Amend(second, {transparency("none", 0.3f)}).at(0));
    EXPECT_EQ(stage.changes, told);
    EXPECT_EQ(std::get<CTransparencyEdit>(stage.view.applied.back()).value, 0.2f);
    EXPECT_EQ(stage.view.applied.size(), session.Edits().AppliedCount());
    for (float value = 0; value < 1; value += 0.01f)
        EXPECT_TRUE(session.Amend(session.Edits().State(), {transparency("a", value)}).at(0));
    EXPECT_LE(stage.view.applied.size(), 3u) << "nothing piles up";
    EXPECT_TRUE(session.Amend(session.Edits().State(), {CDeleteEdit{"a"}}).at(0));
    EXPECT_EQ(stage.view.applied.size(), 2u) << "what it does not make void goes";
    EXPECT_TRUE(session.Amend(session.Edits().State(), {transparency("a", 0.2f)}).at(0));
    session.Undo();
    EXPECT_EQ(stage.messages.back(), L"Undone: slide");
    EXPECT_EQ(stage.view.applied.size(), 1u);
    session.Redo();
    EXPECT_EQ(std::get<CTransparencyEdit>(stage.view.applied.back()).value, 0.2f);
}

// --- unsaved edits ---------------------------------------------------------------------------------------

TEST_F(CSessionTest, MarksUnsavedEditsInTheTitle) {
    const std::wstring path = stage.Add("a.3ds"), title = L"Orbivue - " + path;
    stage.Open(path);
    EXPECT_EQ(stage.title, title);
    session.DeleteNode("a");
    EXPECT_EQ(stage.title, title + L" *");
    session.Undo();
    EXPECT_EQ(stage.title, title);
    session.Redo();
    EXPECT_TRUE(session.Save(stage.Add("out.3ds")));
    EXPECT_EQ(stage.title, title) << "a scene that was saved has its edits";
    session.Undo();
    EXPECT_EQ(stage.title, title + L" *") << "it lacks what was saved";
    session.DeleteNode("a");
    EXPECT_TRUE(session.HasUnsavedEdits()) << "though it looks the same, nobody knows";
    session.Undo();
    session.Reload();
    EXPECT_EQ(stage.title, title);
}

/** What drops the scene, and so asks. */
struct CLoss {
    const char* name;
    void (*lose)(CSessionStage&, const std::wstring& other);
};
const CLoss kLosses[] = {
    {"Opening", [](CSessionStage& stage, const std::wstring& other) { (void)stage.Open(other); }},
    {"Stepping", [](CSessionStage& stage, const std::wstring&) { stage.session.Step(EStep::Next); }},
    {"Reloading", [](CSessionStage& stage, const std::wstring&) { stage.session.Reload(); }},
};
class CSessionLossTest : public testing::TestWithParam<CLoss> {};

TEST_P(CSessionLossTest, AsksOnceAndKeepsTheSceneIfThatIsWanted) {
    CSessionStage stage;
    const std::wstring first = stage.Add("a.3ds"), other = stage.Add("b.3ds");
    stage.Open(first);
    GetParam().lose(stage, other);
    EXPECT_EQ(stage.questions, 0) << "nothing was edited";
    stage.Open(first);
    stage.session.DeleteNode("a");
    const std::size_t loads = stage.view.loads.size(), reports = stage.reports.size();
    stage.mayLoseEdits = false;
    // A slideshow goes on, and the key is still held.
    stage.whileAsking = [&] {
        for (int i = 0; i < 5; ++i) stage.session.Step(EStep::Next);
        EXPECT_FALSE(stage.session.MayClose());
    };
    GetParam().lose(stage, other);
    stage.ServeEvents();
    EXPECT_EQ(stage.questions, 1);
    EXPECT_EQ(stage.closings, 0);
    EXPECT_EQ(stage.Shown(), L"a.3ds");
    EXPECT_EQ(stage.view.loads.size(), loads);
    EXPECT_EQ(stage.reports.size(), reports);
    EXPECT_TRUE(stage.session.HasUnsavedEdits());
    EXPECT_EQ(stage.session.Document().path, first);
    stage.mayLoseEdits = true;
    GetParam().lose(stage, other);
    EXPECT_EQ(stage.questions, 2);
    EXPECT_FALSE(stage.session.HasUnsavedEdits());
    EXPECT_EQ(stage.view.loads.size(), loads + 1);
}
INSTANTIATE_TEST_SUITE_P(All, CSessionLossTest, testing::ValuesIn(kLosses), kRowName);

}  // namespace
