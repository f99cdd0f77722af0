// SPDX-License-Identifier: MIT
#pragma once

#include <wx/statusbr.h>

#include <functional>

#include "frame/scene_summary.h"

class wxButton;
class wxGauge;

/** What is going on, and what the scene holds; its notes are a button. */
class CSceneStatusBar final : public wxStatusBar {
  public:
    CSceneStatusBar(wxWindow* parent, std::function<void()> showNotes);

    void ShowMessage(const std::wstring& text);
    /** Shows what a menu's item is in place of the message, which comes back with an empty text. */
    void ShowHelp(const std::wstring& text);
    void ShowScene(const CSceneSummary& summary);
    /** A text and a bar in place of the message, painted at once. */
    void ShowProgress(const CProgressText& progress);
    void EndProgress();

  private:
    enum EField { kMessage, kGauge, kTriangles, kObjects, kNotes, kFieldCount };
    void PlaceChildren();
    void FitFields(const CSceneSummary& summary);

    std::wstring m_message;
    wxGauge* m_gauge;
    wxButton* m_notes;
};
