// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "scene_builder/large_scene.h"
#include "session/CSessionStage.h"

namespace {

using folder_models::EStep;
using CLoads = std::vector<std::string>;

class CSessionStepsTest : public testing::Test {
  protected:
    std::wstring AddModel(const char* name) {
        MakeLargeScene(100, stage.folder / name, "CHECKER.JPG");
        return file_util_ex::ConvertFromUTF8W(stage.folder / name);
    }
    /** The picture of what was opened is painted, and its neighbours are read. */
    void ShowPicture() {
        ASSERT_TRUE(stage.view.whenShown);
        std::exchange(stage.view.whenShown, nullptr)();
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!session.HasReadAhead() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
        ASSERT_TRUE(session.HasReadAhead());
    }
    /** The last load's kind, and the file shown. */
    void ExpectStep(EStep step, const wchar_t* shown, const char* how) {
        session.Step(step);
        EXPECT_EQ(stage.Shown(), shown);
        EXPECT_EQ(stage.view.loads.back(), how);
    }

    CSessionStage stage;
    CSession& session = stage.session;
};

TEST_F(CSessionStepsTest, StepsRoundTheFolder) {
    stage.Open(stage.Add("a2.3ds"));
    session.Step(EStep::Next);
    EXPECT_EQ(stage.reports.size(), 1u) << "it is alone";
    (void)stage.Add("a10.zip");
    (void)stage.Add("b.obj");
    for (const unsigned place : {2u, 1u}) {
        session.Step(EStep::Next);
        EXPECT_EQ(stage.Shown(), place == 2 ? L"a10.zip" : L"a2.3ds");
        EXPECT_EQ(stage.reports.back().folderModels, 2u);
        EXPECT_EQ(stage.reports.back().folderPlace, place);
    }
    stage.Open(file_util_ex::ConvertFromUTF8W(stage.folder / "b.obj"));
    EXPECT_EQ(session.FolderPlace(), 0u) << "not one of those that are stepped to";
    ExpectStep(EStep::Previous, L"a10.zip", "file");
}

TEST_F(CSessionStepsTest, OneEntryOfTheRecentFilesIsForSteps) {
    for (const char* name : {"a.3ds", "b.3ds", "c.3ds"}) stage.Open(stage.Add(name));
    (void)stage.Add("d.3ds");
    (void)stage.Add("e.3ds");
    const std::vector<std::wstring> chosen = stage.recent.Files();
    for (int i = 0; i < 2; ++i) session.Step(EStep::Next);
    ASSERT_EQ(stage.recent.Files().size(), 4u);
    EXPECT_EQ(file_util_ex::GetFileName(stage.recent.Files().front()), L"e.3ds");
    EXPECT_EQ(std::vector(stage.recent.Files().begin() + 1, stage.recent.Files().end()), chosen);
}

TEST_F(CSessionStepsTest, TakesNeighboursThatWereReadAhead) {
    stage.Open(AddModel("a.3ds"));
    for (const char* name : {"b.3ds", "c.3ds", "d.3ds"}) AddModel(name);
    ASSERT_TRUE(session.HasReadAhead()) << "not before the picture stands";
    ShowPicture();
    ExpectStep(EStep::Next, L"b.3ds", "ready");
    ExpectStep(EStep::Next, L"c.3ds", "file");
    ShowPicture();
    ExpectStep(EStep::Previous, L"b.3ds", "ready");
    ShowPicture();
    // A file that was changed since is read again, and one that was chosen elsewhere is ready, too.
    std::filesystem::last_write_time(stage.folder / "a.3ds", std::filesystem::file_time_type{});
    ExpectStep(EStep::Previous, L"a.3ds", "file");
    ShowPicture();
    EXPECT_EQ(stage.Open(file_util_ex::ConvertFromUTF8W(stage.folder / "b.3ds")), EOpened::Opened);
    EXPECT_EQ(stage.view.loads.back(), "ready");
    ShowPicture();
    session.SetReadsAhead(false);
    ExpectStep(EStep::Next, L"c.3ds", "file");
}

TEST_F(CSessionStepsTest, ABrokenNeighbourFailsWhenItIsOpened) {
    (void)stage.Add("b.3ds", "bad");
    stage.Open(AddModel("a.3ds"));
    ShowPicture();
    EXPECT_EQ(stage.reports.size(), 1u);
    session.Step(EStep::Next);
    EXPECT_EQ(stage.reports.back().result, EOpened::Failed);
    EXPECT_EQ(stage.reports.back().folderPlace, 2u);
    // No picture follows, and the next file is read at once.
    while (!session.HasReadAhead()) std::this_thread::yield();
    ExpectStep(EStep::Next, L"a.3ds", "ready");
}

TEST_F(CSessionStepsTest, StopsReadingWhenTheDocumentGoes) {
    stage.Open(AddModel("a.3ds"));
    AddModel("b.3ds");
    EXPECT_TRUE(session.DeleteFile());
    EXPECT_EQ(stage.Shown(), L"b.3ds");
    EXPECT_TRUE(session.DeleteFile());
    EXPECT_FALSE(stage.view.whenShown) << "nothing is there to be read";
    EXPECT_TRUE(session.HasReadAhead());
}

}  // namespace
