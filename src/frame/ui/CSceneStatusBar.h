// SPDX-License-Identifier: MIT
#pragma once

#include <wx/statusbr.h>

#include <array>
#include <functional>

#include "frame/scene_summary.h"
#include "widgets/access/ui/CAccessibleRows.h"

class wxButton;
class wxGauge;

/** The status bar: a message or the progress of an opening, and facts about the scene. A button shows the
 * scene's notes. */
class CSceneStatusBar final : public wxStatusBar {
  public:
    CSceneStatusBar(wxWindow* parent, std::function<void()> showNotes);

    void ShowMessage(const std::wstring& text);
    /** Shows the help text of a menu item instead of the message; an empty text brings the message back. */
    void ShowHelp(const std::wstring& text);
    void ShowScene(const CSceneSummary& summary);
    /** Shows a text and a progress bar instead of the message, and paints them at once. */
    void ShowProgress(const CProgressText& progress);
    void EndProgress();

  private:
    enum EField { kMessage, kGauge, kPlace, kTriangles, kObjects, kNotes, kFieldCount };
    static constexpr std::array kTextFields{kMessage, kPlace, kTriangles, kObjects};
    void PlaceChildren();
    void FitFields(const CSceneSummary& summary);
    void Put(EField field, const std::wstring& text);
    [[nodiscard]] CDrawnItem Described(EField field) const;

    CAccessibleRows m_access;
    std::wstring m_message;
    wxGauge* m_gauge;
    wxButton* m_notes;
};
