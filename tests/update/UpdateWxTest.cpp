// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <wx/aui/framemanager.h>
#include <wx/button.h>
#include <wx/frame.h>
#include <wx/textctrl.h>

#include "base/text/utf8_text.h"
#include "files/CTestFolder.h"
#include "modeldb/client/CChildProgram.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettings.h"
#include "settings/CSettingsGuard.h"
#include "update/ui/CUpdateBar.h"
#include "update/ui/CUpdateChecks.h"
#include "update/ui/CUpdateNewsDlg.h"
#include "update/ui/CUpdateProgressDlg.h"
#include "update/win_sparkle.h"
#include "widgets/CModalDriver.h"
#include "widgets/CRecordedPrompt.h"
#include "widgets/windows_below.h"

namespace {

/** A main window with a field that has the focus, settings of its own, and the service, which asks a server of the test's. */
class UpdateWxTest : public testing::Test {
  protected:
    UpdateWxTest() {
        for (const char* name : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) ::unsetenv(name);
        CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
        field = new wxTextCtrl(frame, wxID_ANY);
        panes.SetManagedWindow(frame);
        panes.AddPane(field, wxAuiPaneInfo().CenterPane());
        panes.Update();
        wxTheApp->SetTopWindow(frame);
        CModalDriver::ShowFirst(*frame);
        field->SetFocus();
        EXPECT_TRUE(CModalDriver::WaitFor([this] { return field->HasFocus(); }));
    }
    ~UpdateWxTest() override {
        Stop();
        panes.UnInit();
        wxTheApp->SetTopWindow(nullptr);
        frame->Destroy();
        wxTheApp->ProcessIdle();
    }
    void Start(const std::string& path, bool isAutomatic) {
        Stop();
        checks = std::make_unique<CUpdateChecks>(CHoldForWindow(), 1);
        checks->Trust(ORBIVUE_TEST_CERTIFICATE);
        CUpdatePresenter::Set(checks.get());
        win_sparkle_set_app_details(L"Kestrane", L"Orbivue", L"1.9.5");
        win_sparkle_set_appcast_url(path.empty() ? "" : (server.Address("https") + path).c_str());
        win_sparkle_set_automatic_check_for_updates(isAutomatic ? 1 : 0);
        win_sparkle_init();
    }
    void Stop() {
        win_sparkle_cleanup();
        CUpdatePresenter::Set(nullptr);
        checks.reset();
    }
    template <class T>
    static T* Find(const wxWindow& in) {
        const std::vector<T*> found = WindowsBelow<T>(in);
        return found.empty() ? nullptr : found.front();
    }
    CUpdateBar* Bar() { return Find<CUpdateBar>(*frame); }
    /** The open dialog of a kind; null when there is none. */
    template <class T>
    static T* Dialog() {
        for (wxWindow* window : wxTopLevelWindows)
            if (auto* found = dynamic_cast<T*>(window); found && found->IsModal()) return found;
        return nullptr;
    }
    /** A step: presses a button of a dialog. */
    template <class T>
    static CModalDriver::CStep PressIn(int id) {
        return [id] {
            T* dialog = Dialog<T>();
            if (dialog) dialog->GetEventHandler()->QueueEvent(new wxCommandEvent(wxEVT_BUTTON, id));
            return dialog != nullptr;
        };
    }
    std::wstring Kept(const char* key) { return CLocalRegStore::GetString("Settings", key, {}); }

    CTestFolder folder;
    CLocalRegStore::CDefaultFileGuard store;
    CSettingsGuard settings;
    CChildProgram server{{"python3", ORBIVUE_FEED_SERVER, ORBIVUE_TEST_CERTIFICATE}};
    CRecordedPrompt prompt;
    std::vector<std::wstring>& messages = prompt.messages;
    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "Main");
    wxTextCtrl* field;
    wxAuiManager panes;
    std::unique_ptr<CUpdateChecks> checks;
};

TEST_F(UpdateWxTest, NewsThatNobodyAskedForWaitInABarUntilTheyAreSkipped) {
    Start("feed", true);
    ASSERT_TRUE(CModalDriver::WaitFor([this] { return Bar() && Bar()->IsShownOnScreen(); }));
    EXPECT_TRUE(field->HasFocus());
    EXPECT_NE(CTestFolder::TextOf(folder / "settings.ini").find("UpdateLastCheck=1"), std::string::npos);
    frame->ShowFullScreen(true);
    EXPECT_TRUE(CModalDriver::WaitFor([this] { return !Bar()->IsShownOnScreen(); }));
    frame->ShowFullScreen(false);
    EXPECT_TRUE(CModalDriver::WaitFor([this] { return Bar()->IsShownOnScreen(); }));
    CModalDriver driver({PressIn<CUpdateNewsDlg>(CUpdateNewsDlg::kSkip)});
    wxButton* more = Find<wxButton>(*Bar());
    more->SetFocus();
    EXPECT_TRUE(CModalDriver::WaitFor([&] { return more->HasFocus(); }));
    more->GetEventHandler()->QueueEvent(new wxCommandEvent(wxEVT_BUTTON, more->GetId()));
    EXPECT_TRUE(
        CModalDriver::WaitFor([&] { return driver.IsDone() && !Dialog<CUpdateNewsDlg>() && !Bar(); }));
    EXPECT_TRUE(CModalDriver::WaitFor([this] { return field->HasFocus(); }));
    EXPECT_EQ(Kept("UpdateSkippedVersion"), L"9.0");
    EXPECT_EQ(CSettings::Instance().updateSkipped, L"9.0");

    // Whoever asks hears of it all the same, and nothing is said unasked on the same day.
    CModalDriver again({PressIn<CUpdateNewsDlg>(CUpdateNewsDlg::kLater)});
    win_sparkle_check_update_with_ui();
    EXPECT_TRUE(again.IsDone());
    EXPECT_TRUE(messages.empty());
}

TEST_F(UpdateWxTest, AnUnaskedCheckThatFailsSaysNothingAndIsNotRepeated) {
    Start("html", true);
    wxStopWatch watch;
    EXPECT_TRUE(
        CModalDriver::WaitFor([&] { return watch.Time() > 600 && !Kept("UpdateLastCheck").empty(); }));
    Start("feed", true);
    watch.Start();
    EXPECT_TRUE(CModalDriver::WaitFor([&] { return watch.Time() > 600; }));
    EXPECT_EQ(Bar(), nullptr);
    CLocalRegStore::OverwriteString("Settings", "UpdateLastCheck", L"1700000000");
    Start("feed", true);
    EXPECT_TRUE(CModalDriver::WaitFor([this] { return Bar() != nullptr; }));
    EXPECT_TRUE(messages.empty());
}

TEST_F(UpdateWxTest, TheCommandTellsItsOutcomeAndCanBeCancelled) {
    Start("", false);
    win_sparkle_check_update_with_ui();
    Start("html", false);
    win_sparkle_check_update_with_ui();
    EXPECT_EQ(messages, (std::vector<std::wstring>{
                            L"Orbivue knows no address to ask for new versions; nothing was looked for.",
                            L"It could not be found out whether there is a new version: the address gives no "
                            L"list of versions"}));
    messages.clear();
    Start("silent", false);
    CModalDriver driver({PressIn<CUpdateProgressDlg>(wxID_CANCEL)});
    win_sparkle_check_update_with_ui();
    EXPECT_TRUE(driver.IsDone());
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(Kept("UpdateLastCheck"), L"");
}

}  // namespace
