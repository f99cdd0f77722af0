// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <wx/aui/auibar.h>
#include <wx/checkbox.h>
#include <wx/choicdlg.h>
#include <wx/menu.h>

#include <array>

#include "frame/CFrameWindow.h"
#include "frame/command_ids.h"
#include "frame/dialogs/ui/CShortcutList.h"
#include "row_name.h"
#include "settings/CSettings.h"

namespace {

using CStep = CModalDriver::CStep;

class DialogsWxTest : public testing::Test {
  protected:
    DialogsWxTest() { m_dialogs.Register(); }
    void SetUp() override { ASSERT_TRUE(window.IsReady()); }
    /** A step: works on the dialog as soon as it is active. */
    CStep With(const std::function<void(wxDialog&)>& work) {
        return [this, work] {
            wxDialog* dialog = m_dialogs.Last();
            if (!dialog || !dialog->IsActive()) return false;
            work(*dialog);
            return true;
        };
    }
    CStep Nothing() {
        return With([](wxDialog&) {});
    }
    void Run(int command, std::deque<CStep> steps) {
        CModalDriver driver(std::move(steps));
        window.Frame().RunCommand(command);
        EXPECT_TRUE(driver.IsDone());
    }
    static std::vector<wxCheckBox*> BoxesIn(wxWindow& parent) {
        std::vector<wxCheckBox*> boxes;
        for (wxWindow* child : parent.GetChildren()) {
            if (auto* box = dynamic_cast<wxCheckBox*>(child)) boxes.push_back(box);
            for (wxCheckBox* box : BoxesIn(*child)) boxes.push_back(box);
        }
        return boxes;
    }
    /** A stand-in for the desktop's opener, which keeps what it is asked for. */
    void FurnishOpener() {
        const std::string opener = window.folder.Add(
            "xdg-open", "#!/bin/sh\nprintf '%s' \"$1\" >>" + (window.folder / "opened") + "\n");
        ASSERT_EQ(::chmod(opener.c_str(), 0700), 0);
        ASSERT_EQ(::setenv("PATH", (window.folder.Path() + ":/usr/bin:/bin").c_str(), 1), 0);
    }
    std::string Opened() const {
        return file_util_ex::ReadWholeFile(window.folder / "opened").HasValue()
                   ? std::string(
                         std::istreambuf_iterator<char>(std::ifstream(window.folder / "opened").rdbuf()), {})
                   : std::string();
    }
    static wxTopLevelWindow* Shortcuts() {
        for (wxWindow* top : wxTopLevelWindows)
            if (top->GetLabel() == "Keyboard shortcuts" && top->IsShown())
                return static_cast<wxTopLevelWindow*>(top);
        return nullptr;
    }

    CFrameWindow window;

  private:
    CModalDialogs m_dialogs;
};

TEST_F(DialogsWxTest, SettingsAreStoredByOkAlone) {
    CSettings& settings = CSettings::Instance();
    const CStep swap = With([](wxDialog& dialog) {
        for (wxCheckBox* box : BoxesIn(dialog)) box->SetValue(!box->GetValue());
    });
    settings.autoUpdate = true;
    settings.closeOnEsc = false;
    Run(kCmdSettings, {swap, CModalDriver::Press(WXK_ESCAPE)});
    EXPECT_TRUE(settings.autoUpdate && !settings.closeOnEsc);
    Run(kCmdSettings, {swap, CModalDriver::Press(WXK_RETURN)});
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
    const CStep choose = With([](wxDialog& dialog) {
        const auto* list =
            dynamic_cast<wxListBox*>(wxWindow::FindWindowByName("Language selection", &dialog));
        ASSERT_NE(list, nullptr);
        if (GetParam().chosen)
            dynamic_cast<wxSingleChoiceDialog&>(dialog).SetSelection(list->FindString(GetParam().chosen));
    });
    Run(kCmdSelectLanguage, {choose, CModalDriver::Press(GetParam().chosen ? WXK_RETURN : WXK_ESCAPE)});
    EXPECT_EQ(language, GetParam().after);
    EXPECT_EQ(window.prompt->messages,
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
        const wxAuiToolBar* bar = nullptr;
        for (wxWindow* child : window.Frame().GetChildren())
            if (auto* found = dynamic_cast<wxAuiToolBar*>(child);
                found && found->FindTool(WidgetIdOf(kCmdAbout)))
                bar = found;
        const bool inMenu = window.Frame().GetMenuBar()->IsChecked(WidgetIdOf(kCmdAbout));
        const bool onBar =
            (bar->FindTool(WidgetIdOf(kCmdAbout))->GetState() & wxAUI_BUTTON_STATE_PRESSED) != 0;
        EXPECT_EQ(inMenu, onBar);
        return inMenu;
    };
    Run(kCmdAbout, {With([&](wxDialog& dialog) {
                        EXPECT_EQ(dialog.GetTitle(), "About Orbivue");
                        EXPECT_TRUE(isMarked());
                    }),
                    CModalDriver::Press(WXK_ESCAPE)});
    EXPECT_FALSE(isMarked());
}

TEST_F(DialogsWxTest, KeysForHelpWorkEverywhere) {
    FurnishOpener();
    const auto showsHelp = [this] {
        window.prompt->messages.clear();
        window.Press(WXK_F1);
        // The page is opened, or a message names it.
        EXPECT_TRUE(CFrameWindow::WaitFor([&] {
            return Opened().ends_with("/manual/index.html") ||
                   (!window.prompt->messages.empty() &&
                    window.prompt->messages.back().ends_with(L"/manual/index.html"));
        }));
        (void)file_util_ex::DeleteFileW(window.folder / "opened");
        window.Press('?', wxMOD_CONTROL | wxMOD_SHIFT);
        ASSERT_TRUE(CFrameWindow::WaitFor([] { return Shortcuts() && Shortcuts()->IsActive(); }));
        window.Press(WXK_ESCAPE);
        EXPECT_TRUE(CFrameWindow::WaitFor([&] { return !Shortcuts() && window.Frame().IsActive(); }));
    };
    showsHelp();
    window.Frame().ToggleFullScreen();
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return window.Frame().IsFullScreen(); }));
    showsHelp();
    window.Frame().ToggleFullScreen();
    window.Frame().RunCommand(kCmdShowModelList);
    showsHelp();
}

TEST_F(DialogsWxTest, TheWebSiteIsOpenedOrNothingHappens) {
    FurnishOpener();
    window.Frame().RunCommand(kCmdVisitWebsite);
    EXPECT_TRUE(Opened().starts_with("https://")) << Opened();
    (void)file_util_ex::DeleteFileW(window.folder / "opened");
    const std::string path = ::getenv("PATH");
    ::setenv("PATH", "/nowhere", 1);
    window.Frame().RunCommand(kCmdVisitWebsite);
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(Opened(), "");
    EXPECT_TRUE(window.prompt->messages.empty());
}

TEST_F(DialogsWxTest, ShortcutsAreFound) {
    wxDialog dialog(&window.Frame(), wxID_ANY, "list");
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
