// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "frame/command_states.h"
#include "frame/command_table.h"
#include "frame/save_name.h"
#include "row_name.h"

namespace {

std::string TextOf(int id) {
    const CCommand* command = FindCommand(id);
    return command && command->text ? command->text : "";
}

TEST(CommandTableTest, NumbersAreUniqueAndFitTheToolkit) {
    std::set<int> ids;
    for (const CCommand& command : Commands()) {
        EXPECT_TRUE(ids.insert(command.id).second) << command.text;
        EXPECT_EQ(CommandOfWidgetId(WidgetIdOf(command.id)), command.id);
        EXPECT_GT(WidgetIdOf(command.id), 0);
        EXPECT_LT(WidgetIdOf(command.id), 32768);
    }
}

TEST(CommandTableTest, EveryToolHasAPictureAndATip) {
    std::set<int> tools;
    std::vector<int> all(ToolBarOrder().begin(), ToolBarOrder().end());
    all.insert(all.end(), MaterialBarTools().begin(), MaterialBarTools().end());
    for (const int id : all) {
        if (id == 0) continue;
        const CCommand* command = FindCommand(id);
        ASSERT_NE(command, nullptr) << id;
        EXPECT_TRUE(command->toolTip && command->icon) << command->text;
        tools.insert(id);
    }
    for (const CCommand& command : Commands())
        EXPECT_EQ(command.icon != nullptr, tools.count(command.id) == 1) << command.text;
    for (const int id : ContextMenuOrder()) EXPECT_TRUE(id == 0 || FindCommand(id)) << id;
}

/** Settings hold the numbers, and the spellings are meant. */
TEST(CommandTableTest, KeepsItsNumbersAndTexts) {
    EXPECT_EQ(TextOf(32776), "ISO Camera");
    EXPECT_EQ(TextOf(32804), "Exort to POV-Ray format");
    EXPECT_EQ(TextOf(32105), "E&xit\tCtrl+X");
}

struct CStateCase {
    const char* name;
    CFrameState frame;
    std::set<int> enabled, disabled;
};

class CommandStatesTest : public testing::TestWithParam<CStateCase> {};

TEST_P(CommandStatesTest, Enables) {
    const auto isEnabled = [](int id) { return StateOf(*FindCommand(id), GetParam().frame).enabled; };
    for (const int id : GetParam().enabled) EXPECT_TRUE(isEnabled(id)) << TextOf(id);
    for (const int id : GetParam().disabled) EXPECT_FALSE(isEnabled(id)) << TextOf(id);
}

const CStateCase kStateCases[] = {
    {"NoModel",
     {},
     {kCmdOpen, kCmdExit, kCmdIsoCamera, kCmdShowAxis, kCmdFullScreen},
     {kCmdSaveAs, kCmdCompressToZip, kCmdDeleteFile, kCmdPreviousFile, kCmdNextFile, kCmdExportPov,
      kCmdExportHtml, kCmdExportGoogleDrive, kCmdScreenShot, kCmdReload, kCmdPlayAnimation, kCmdSceneNotes,
      kCmdUndo, kCmdRedo}},
    {"LonelyModel",
     {.hasModel = true, .hasFile = true},
     {kCmdSaveAs, kCmdCompressToZip, kCmdDeleteFile, kCmdReload, kCmdScreenShot},
     {kCmdPreviousFile, kCmdNextFile, kCmdPlayAnimation}},
    {"FailedOpenAmongOthers",  // the way on to the next file stays open
     {.hasFile = true, .canStep = true},
     {kCmdPreviousFile, kCmdNextFile, kCmdReload},
     {kCmdSaveAs, kCmdDeleteFile}},
    {"AnimatedModel",
     {.hasModel = true, .hasFile = true, .canStep = true, .hasNotes = true, .isAnimated = true},
     {kCmdPlayAnimation, kCmdNextFile, kCmdSceneNotes},
     {}},
    {"ShowRests", {.canStartShow = true}, {kCmdStartSlideShow, kCmdFullScreenSlideShow}, {kCmdStopSlideShow}},
    {"ShowRuns",
     {.canStartShow = true, .isShowRunning = true},
     {kCmdStopSlideShow, kCmdFullScreenSlideShow},
     {kCmdStartSlideShow}},
    {"Edited", {.hasModel = true, .canUndo = true}, {kCmdUndo, kCmdDeleteFile}, {kCmdRedo, kCmdReload}},
    {"TakenBack", {.hasModel = true, .canRedo = true}, {kCmdRedo}, {kCmdUndo}}};
INSTANTIATE_TEST_SUITE_P(All, CommandStatesTest, testing::ValuesIn(kStateCases), kRowName);

TEST(CommandStatesTest, ChecksWhatIsOn) {
    const CFrameState frame{.shown = {.wire = true, .lights = true},
                            .isFullScreen = true,
                            .isToolBarShown = false,
                            .runningCommand = kCmdNextFile};
    const std::set<int> checked{kCmdShowLights, kCmdRenderMode, kCmdFullScreen, kCmdNextFile};
    for (const CCommand& command : Commands())
        EXPECT_EQ(StateOf(command, frame).checked, checked.count(command.id) == 1) << command.text;
}

TEST(SaveNameTest, TakesTheEndingsThatAreWritten) {
    for (const wchar_t* name : {L"/m/a.3ds", L"/m/a.3DS", L"a b.zip"})
        EXPECT_TRUE(IsNameToSave(name)) << name;
    // Only small letters have an archive written, and nobody takes a scene for one.
    for (const wchar_t* name : {L"/m/a.obj", L"a.ZIP", L"a.3ds.txt", L"a", L""})
        EXPECT_FALSE(IsNameToSave(name)) << name;
}

}  // namespace
