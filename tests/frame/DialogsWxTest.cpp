// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <stdlib.h>
#include <wx/checkbox.h>
#include <wx/choicdlg.h>
#include <wx/menu.h>

#include "frame/CFrameWindow.h"
#include "frame/command_ids.h"
#include "frame/dialogs/ui/CShortcutList.h"
#include "row_name.h"
#include "settings/CSettings.h"
#include "widgets/CFakeOpener.h"
#include "widgets/windows_below.h"

namespace {

using CStep = CModalDriver::CStep;

class DialogsWxTest : public CFrameTest {
  protected:
    static wxTopLevelWindow* Shortcuts() {
        for (wxWindow* top : wxTopLevelWindows)
            if (top->GetLabel() == "Keyboard shortcuts" && top->IsShown())
                return static_cast<wxTopLevelWindow*>(top);
        return nullptr;
    }
};

TEST_F(DialogsWxTest, SettingsAreStoredByOkAlone) {
    CSettings& settings = CSettings::Instance();
    const CStep swap = CModalDriver::With([](wxDialog& dialog) {
        for (wxCheckBox* box : WindowsBelow<wxCheckBox>(dialog)) box->SetValue(!box->GetValue());
    });
    settings.autoUpdate = true;
    settings.closeOnEsc = false;
    RunWithDialog(kCmdSettings, {swap, CModalDriver::Press(WXK_ESCAPE)});
    EXPECT_TRUE(settings.autoUpdate && !settings.closeOnEsc);
    RunWithDialog(kCmdSettings, {swap, CModalDriver::Press(WXK_RETURN)});
    EXPECT_TRUE(!settings.autoUpdate && settings.closeOnEsc);
}

struct CLanguageCase {
    const char* name;
    const wchar_t* before;
    const char* chosen;  ///< its name in the list; null: Cancel
    const wchar_t* after;
    bool isTold;
};

class LanguageDialogWxTest : public DialogsWxTest, public testing::WithParamInterface<CLanguageCase> {};

TEST_P(LanguageDialogWxTest, StoresTheChoice) {
    std::wstring& language = CSettings::Instance().language;
    language = GetParam().before;
    const CStep choose = CModalDriver::With([](wxDialog& dialog) {
        const auto* list =
            dynamic_cast<wxListBox*>(wxWindow::FindWindowByName("Language selection", &dialog));
        ASSERT_NE(list, nullptr);
        if (GetParam().chosen)
            dynamic_cast<wxSingleChoiceDialog&>(dialog).SetSelection(list->FindString(GetParam().chosen));
    });
    RunWithDialog(kCmdSelectLanguage,
                  {choose, CModalDriver::Press(GetParam().chosen ? WXK_RETURN : WXK_ESCAPE)});
    EXPECT_EQ(language, GetParam().after);
    EXPECT_EQ(window.prompt.messages,
              std::vector<std::wstring>(GetParam().isTold ? 1 : 0,
                                        L"You must restart Orbivue for this change to take effect."));
}

const CLanguageCase kLanguageCases[] = {
    {"CancelChoosesEnglish", L"de", nullptr, L"en", true},
    {"CancelInEnglish", L"en", nullptr, L"en", false},
    {"AnotherLanguage", L"en", "Deutsch", L"de", true},
    {"TheSameLanguage", L"de", "Deutsch", L"de", false},
};
INSTANTIATE_TEST_SUITE_P(All, LanguageDialogWxTest, testing::ValuesIn(kLanguageCases), kRowName);

TEST_F(DialogsWxTest, AboutIsMarkedWhileItIsOpen) {
    const auto isMarked = [this] {
        EXPECT_EQ(Frame().GetMenuBar()->IsChecked(WidgetIdOf(kCmdAbout)), IsChecked(kCmdAbout));
        return IsChecked(kCmdAbout);
    };
    RunWithDialog(kCmdAbout, {CModalDriver::With([&](wxDialog& dialog) {
                                  EXPECT_EQ(dialog.GetTitle(), "About Orbivue");
                                  EXPECT_TRUE(isMarked());
                              }),
                              CModalDriver::Press(WXK_ESCAPE)});
    EXPECT_FALSE(isMarked());
}

TEST_F(DialogsWxTest, KeysForHelpWorkEverywhere) {
    const CFakeOpener opener;
    const auto showsHelp = [&] {
        window.prompt.messages.clear();
        window.Press(WXK_F1);
        // The page is opened, or a message names it.
        EXPECT_TRUE(WaitFor([&] {
            return opener.TakeOpened().ends_with("/manual/index.html\n") ||
                   (!window.prompt.messages.empty() &&
                    window.prompt.messages.back().ends_with(L"/manual/index.html"));
        }));
        window.Press('?', wxMOD_CONTROL | wxMOD_SHIFT);
        ASSERT_TRUE(WaitFor([] { return Shortcuts() && Shortcuts()->IsActive(); }));
        window.Press(WXK_ESCAPE);
        EXPECT_TRUE(WaitFor([&] { return !Shortcuts() && Frame().IsActive(); }));
    };
    showsHelp();
    Frame().ToggleFullScreen();
    EXPECT_TRUE(WaitFor([&] { return Frame().IsFullScreen(); }));
    showsHelp();
    Frame().ToggleFullScreen();
    Frame().RunCommand(kCmdShowModelList);
    showsHelp();
}

TEST_F(DialogsWxTest, TheWebSiteIsOpenedOrNothingHappens) {
    const CFakeOpener opener;
    Frame().RunCommand(kCmdVisitWebsite);
    EXPECT_TRUE(opener.TakeOpened().starts_with("https://"));
    const std::string path = ::getenv("PATH");
    ::setenv("PATH", "/nowhere", 1);
    Frame().RunCommand(kCmdVisitWebsite);
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(opener.TakeOpened(), "");
    EXPECT_TRUE(window.prompt.messages.empty());
}

TEST_F(DialogsWxTest, ShortcutsAreFound) {
    wxDialog dialog(&Frame(), wxID_ANY, "list");
    auto* list = new CShortcutList(&dialog);
    const auto count = [list] {
        return std::ranges::count_if(list->GetChildren(),
                                     [](const wxWindow* child) { return child->IsShown(); });
    };
    const auto all = count();
    EXPECT_TRUE(list->Filter(L"ctrl+o OPEN"));
    EXPECT_EQ(count(), 3) << "a heading, a key and what it does";
    EXPECT_FALSE(list->Filter(L"no such thing"));
    EXPECT_EQ(count(), 0);
    EXPECT_TRUE(list->Filter(L""));
    EXPECT_EQ(count(), all);
}

}  // namespace
