// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/uiaction.h>
#include <wx/weakref.h>

#include <filesystem>
#include <functional>
#include <string>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "frame/ui/CAViewerFrame.h"
#include "frame/ui/CFileCommands.h"
#include "session/CSession.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettingsGuard.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CModalDriver.h"
#include "widgets/CRecordedPrompt.h"

/** The program's frame, shown, with settings and files of its own. */
class CFrameWindow {
  public:
    CFrameWindow() {
        [[maybe_unused]] static const bool s_once = (wxInitAllImageHandlers(), true);
        CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
        ShowFrame();
    }
    ~CFrameWindow() {
        if (m_frame) m_frame->Close(true);
        wxTheApp->ProcessIdle();  // windows are deleted when there is nothing else to do
    }

    /** Serves events until the condition holds; false when it never does. */
    static bool WaitFor(const std::function<bool()>& condition) { return CModalDriver::WaitFor(condition); }
    bool IsReady() const { return m_ready; }
    CAViewerFrame& Frame() { return *m_frame; }
    C3dsDisplayWrap& Engine() { return m_frame->View().GetEngine(); }
    bool Open(const std::wstring& path) {
        return m_frame->Session().Open(COpenRequest::OfFile(path)) != EOpened::Failed;
    }
    /** False once the frame has been closed. */
    bool IsThere() const { return m_frame != nullptr; }
    /** Closes the frame as a user does, and shows a new one, as a new start of the program does. */
    void StartAgain() {
        m_frame->Close();
        wxTheApp->ProcessIdle();
        (void)CSettings::Instance().WriteAll();
        CSettings::Instance() = CSettings();
        CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
        CSettings::Instance().ReadAll();
        ShowFrame();
    }
    /** Presses a key with the view in focus, and serves what follows. */
    void Press(int key, int modifiers = 0) {
        m_hand.Char(key, modifiers);
        wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);
    }
    bool IsEnabled(int id) const { return m_frame->StateOfCommand(id).enabled; }

    CTestFolder folder;
    CRecordedPrompt prompt;

  private:
    void ShowFrame() {
        m_frame = new CAViewerFrame("Orbivue");
        if (!m_frame->HasView()) return;
        m_frame->Show();
        m_frame->Raise();
        const CGLCanvasI* canvas = m_frame->View().GetCanvas();
        m_ready = WaitFor([&] { return canvas->IsReady() && m_frame->IsActive(); });
        m_frame->View().GetCanvas()->GetWindow()->SetFocus();
        m_ready = m_ready && WaitFor([&] { return m_frame->View().GetCanvas()->GetWindow()->HasFocus(); });
    }

    CLocalRegStore::CDefaultFileGuard m_store;
    CSettingsGuard m_settings;
    wxWeakRef<CAViewerFrame> m_frame;
    wxUIActionSimulator m_hand;
    bool m_ready = false;
};

/** A test with the program's frame. */
class CFrameTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(window.IsReady()); }
    [[nodiscard]] CAViewerFrame& Frame() { return window.Frame(); }
    [[nodiscard]] static bool WaitFor(const std::function<bool()>& condition) {
        return CFrameWindow::WaitFor(condition);
    }
    /** Where a file of the test's folder lies. */
    [[nodiscard]] std::wstring At(const std::string& name) const {
        return file_util_ex::ConvertFromUTF8W(window.folder / name);
    }
    /** A sample of the program's, copied into the test's folder. */
    std::wstring Sample(const std::string& name, const std::string& as) {
        std::filesystem::copy_file(std_file_paths::GetDataPath("samples/" + name), window.folder / as);
        return At(as);
    }
    [[nodiscard]] bool Shows(const std::wstring& path) {
        return WaitFor([&] { return Frame().View().GetPath() == path; });
    }
    [[nodiscard]] bool IsChecked(int command) { return Frame().StateOfCommand(command).checked; }
    void RunWithDialog(int command, std::deque<CModalDriver::CStep> steps) {
        CModalDriver driver(std::move(steps));
        Frame().RunCommand(command);
        EXPECT_TRUE(driver.IsDone());
    }

    CFrameWindow window;
};
