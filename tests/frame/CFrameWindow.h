// SPDX-License-Identifier: MIT
#pragma once

#include <wx/evtloop.h>
#include <wx/uiaction.h>
#include <wx/weakref.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "files/CTestFolder.h"
#include "frame/ui/CAViewerFrame.h"
#include "frame/ui/CFileCommands.h"
#include "session/CSession.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettingsGuard.h"
#include "widgets/CModalDriver.h"
#include "widgets/CUserPrompt.h"

class C3dsDisplayWrap;

/** Answers all questions as it was told and keeps what was asked. */
class CRecordedPrompt final : public CUserPrompt {
  public:
    void ShowMessage(const std::wstring& text) override { messages.push_back(text); }
    [[nodiscard]] bool AskYesNo(const std::wstring& text) override {
        messages.push_back(text);
        if (const auto work = std::exchange(whileAsking, nullptr)) work();
        return answer;
    }
    void BeginBusy() override { ++busy; }
    void EndBusy() override { --busy; }

    std::vector<std::wstring> messages;
    bool answer = false;
    std::function<void()> whileAsking;  ///< once
    int busy = 0;
};

/** The program's frame, shown, with settings and files of its own. */
class CFrameWindow {
  public:
    CFrameWindow();
    ~CFrameWindow();

    /** Serves events until the condition holds; false when it never does. */
    [[nodiscard]] static bool WaitFor(const std::function<bool()>& condition) {
        return CModalDriver::WaitFor(condition);
    }
    [[nodiscard]] bool IsReady() const { return m_ready; }
    [[nodiscard]] CAViewerFrame& Frame() { return *m_frame; }
    [[nodiscard]] C3dsDisplayWrap& Engine();
    [[nodiscard]] bool Open(const std::wstring& path) {
        return m_frame->Session().Open(COpenRequest::OfFile(path)) != EOpened::Failed;
    }
    /** False once the frame has been closed. */
    [[nodiscard]] bool IsThere() const { return m_frame != nullptr; }
    /** Closes the frame as a user does, and shows a new one, as a new start of the program does. */
    void StartAgain();
    /** Presses a key with the view in focus, and serves what follows. */
    void Press(int key, int modifiers = 0);
    [[nodiscard]] bool IsEnabled(int id) const { return m_frame->StateOfCommand(id).enabled; }

    CTestFolder folder;
    CRecordedPrompt* prompt;

  private:
    void ShowFrame();

    CLocalRegStore::CDefaultFileGuard m_store;
    CSettingsGuard m_settings;
    std::unique_ptr<CUserPrompt> m_promptBefore;
    wxWeakRef<CAViewerFrame> m_frame;
    wxUIActionSimulator m_hand;
    bool m_ready = false;
};
