// SPDX-License-Identifier: MIT
#pragma once

#include <wx/cursor.h>
#include <wx/event.h>
#include <wx/timer.h>
#include <wx/weakref.h>
#include <wx/window.h>

/** During its lifetime the mouse pointer is not seen over a window once it has rested for a second. A movement brings
 * it back. */
class CPointerHider final : public wxEvtHandler {
  public:
    explicit CPointerHider(wxWindow& window);
    ~CPointerHider() override;

    [[nodiscard]] bool IsHidden() const { return m_isHidden; }

  private:
    void OnMouse(wxMouseEvent& event);
    void Hide();
    void Show();

    wxWeakRef<wxWindow> m_window;
    wxCursor m_before;  ///< the window's own, while it is hidden
    wxPoint m_position = wxDefaultPosition;
    bool m_isHidden = false;
    wxTimer m_timer;
};
