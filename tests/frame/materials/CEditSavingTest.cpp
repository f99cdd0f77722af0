// SPDX-License-Identifier: MIT
#include "frame/materials/CEditSaving.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "model/edit/CEdit.h"
#include "script/CSceneScript.h"
#include "session/CSessionStage.h"
#include "widgets/CRecordedPrompt.h"

namespace {

class CEditSavingTest : public testing::Test {
  protected:
    CEditSavingTest() {
        prompt.saveAnswer = ESaveAnswer::Cancel;
        stage.Open(stage.Add("model.3ds"));
        stage.session.Apply({CTransparencyEdit{{"a", {}}, 0.3f}}, L"edit");
    }

    [[nodiscard]] std::string Path(const char* name) const { return stage.folder / name; }
    [[nodiscard]] std::wstring Wide(const char* name) const {
        return file_util_ex::ConvertFromUTF8W(Path(name));
    }
    [[nodiscard]] bool LastMessageHas(const wchar_t* text) const {
        return !prompt.messages.empty() && prompt.messages.back().find(text) != std::wstring::npos;
    }
    /** How many edits a script holds; -1 for one that cannot be read. */
    static int EditsIn(const std::string& script) {
        const CResult<CSceneScript> read = ReadScript(script);
        return read ? static_cast<int>(read.Value().scenes.front().edits.size()) : -1;
    }
    void EditMore() { stage.session.Apply({CTransparencyEdit{{"b", {}}, 0.6f}}, L"more"); }

    CSessionStage stage;
    CRecordedPrompt prompt;
    std::wstring chosen;  ///< what the user chooses
    std::vector<std::wstring> asked;
    CEditSaving saving{stage.session, [this](const std::wstring& folder, const std::wstring& name) {
                           asked.push_back(folder + L"|" + name);
                           return chosen;
                       }};
};

TEST_F(CEditSavingTest, AsksWhereOnceAndThenKnows) {
    EXPECT_FALSE(saving.Save()) << "cancelled";
    EXPECT_TRUE(stage.session.HasUnsavedEdits());
    chosen = Wide("model.orv");
    EXPECT_TRUE(saving.Save());
    EXPECT_EQ(asked.back(), file_util_ex::ConvertFromUTF8W(stage.folder.Path()) + L"|model.orv");
    EXPECT_FALSE(stage.session.HasUnsavedEdits());
    EXPECT_NE(CTestFolder::TextOf(Path("model.orv")).find("Path=model.3ds"), std::string::npos);
    EditMore();
    EXPECT_TRUE(saving.Save());
    EXPECT_EQ(asked.size(), 2u);
    EXPECT_EQ(EditsIn(Path("model.orv")), 2);
    EXPECT_TRUE(prompt.messages.empty());
}

TEST_F(CEditSavingTest, KeepsTheRestOfAScriptOfTheSameModelAndLeavesOthersAlone) {
    const std::string own = stage.folder.Add("own.orv", "; mine\n[Model]\nPath=model.3ds\nTime=7\nWire=1\n");
    chosen = Wide("own.orv");
    EXPECT_TRUE(saving.Save());
    EXPECT_EQ(EditsIn(own), 1);
    EXPECT_TRUE(CTestFolder::TextOf(own).starts_with("; mine\n[Model]\nPath=model.3ds\nTime=7\nWire=1\n"));
    (void)stage.Add("other.3ds");
    const std::string others = "[Model]\nPath=other.3ds\n";
    chosen = file_util_ex::ConvertFromUTF8W(stage.folder.Add("others.orv", others));
    stage.Open(Wide("other.3ds"));
    stage.Open(Wide("model.3ds"));
    EditMore();
    EXPECT_FALSE(saving.Save());
    EXPECT_TRUE(LastMessageHas(L"shows other models"));
    EXPECT_EQ(CTestFolder::TextOf(Path("others.orv")), others);
}

TEST_F(CEditSavingTest, WritesIntoTheSceneOfTheScriptThatIsOpen) {
    const std::string script = stage.folder.Add(
        "show.orv", "[First]\nPath=model.3ds\n[Second]\nPath=model.3ds\nTransparency=c|0.2;\nText=two\n");
    stage.Open(file_util_ex::ConvertFromUTF8W(script));
    ASSERT_TRUE(stage.session.StepScene(folder_models::EStep::Next));
    EXPECT_FALSE(stage.session.HasUnsavedEdits()) << "what the script brought is saved";
    EditMore();
    EXPECT_TRUE(saving.Save());
    EXPECT_TRUE(asked.empty());
    const CSceneScript read = ReadScript(script).Value();
    ASSERT_EQ(read.scenes.size(), 2u);
    EXPECT_TRUE(read.scenes[0].edits.empty());
    EXPECT_EQ(read.scenes[1].edits.size(), 2u) << "its own edit and the new one";
    EXPECT_EQ(read.scenes[1].text, L"two");
}

TEST_F(CEditSavingTest, DoesNotWriteOverWhatOthersDid) {
    chosen = Wide("model.orv");
    ASSERT_TRUE(saving.Save());
    EditMore();
    const std::string changed = "[Model]\nPath=model.3ds\nText=by another hand, and longer\n";
    (void)stage.folder.Add("model.orv", changed);
    chosen.clear();
    EXPECT_FALSE(saving.Save());
    EXPECT_TRUE(LastMessageHas(L"has changed the script"));
    EXPECT_EQ(CTestFolder::TextOf(Path("model.orv")), changed);
    EXPECT_EQ(asked.size(), 2u) << "it asks for another place";
    std::filesystem::remove(Path("model.orv"));
    EXPECT_FALSE(saving.Save());
    EXPECT_TRUE(LastMessageHas(L"was deleted"));
    chosen = Wide("second.orv");
    EXPECT_TRUE(saving.Save());
    EXPECT_EQ(EditsIn(Path("second.orv")), 2);
    EXPECT_FALSE(file_util_ex::DoesFileExist(Path("model.orv")));
}

TEST_F(CEditSavingTest, APlaceThatCannotBeWrittenKeepsTheEdits) {
    chosen = Wide("none/model.orv");
    EXPECT_FALSE(saving.Save());
    EXPECT_TRUE(LastMessageHas(L"could not be saved"));
    EXPECT_TRUE(stage.session.HasUnsavedEdits());
    // A script that is a device would block or swallow it.
    chosen = L"/dev/full";
    EXPECT_FALSE(saving.Save());
    EXPECT_TRUE(stage.session.HasUnsavedEdits());
    EXPECT_EQ(stage.view.applied.size(), 1u);
}

TEST_F(CEditSavingTest, AModelWithoutAFileHasNoScript) {
    (void)stage.session.Open(COpenRequest::OfMemory(EOrigin::Download, L"m.3ds", {{'g', 'o', 'o', 'd'}, {}}));
    stage.session.DeleteNode("a");
    chosen = Wide("m.orv");
    EXPECT_FALSE(saving.Save());
    EXPECT_TRUE(LastMessageHas(L"comes from no file"));
    EXPECT_FALSE(file_util_ex::DoesFileExist(Path("m.orv")));
}

TEST_F(CEditSavingTest, AsksWhatIsToBecomeOfUnsavedEdits) {
    EXPECT_FALSE(saving.MayLose());
    EXPECT_EQ(prompt.messages.back(), L"The edits of model.3ds are not saved. Save them to a script?");
    prompt.saveAnswer = ESaveAnswer::Discard;
    EXPECT_TRUE(saving.MayLose());
    EXPECT_TRUE(stage.session.HasUnsavedEdits()) << "they go with the scene";
    prompt.saveAnswer = ESaveAnswer::Save;
    EXPECT_FALSE(saving.MayLose()) << "no place was chosen";
    chosen = Wide("model.orv");
    EXPECT_TRUE(saving.MayLose());
    EXPECT_EQ(EditsIn(Path("model.orv")), 1);
}

}  // namespace
