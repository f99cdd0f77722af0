// SPDX-License-Identifier: MIT
#pragma once

#include <wx/timer.h>
#include <wx/window.h>

#include <functional>

/** A button beside the model list that scrolls it, again and again while it is held. It takes no focus: the list
 * has keys for that. */
class CScrollButton final : public wxWindow {
  public:
    struct CActions {
        std::function<void()> scroll;
        std::function<void(bool)> press;  ///< the mouse's button goes down, or up
    };
    /** name: for those who cannot see it, translated. */
    CScrollButton(wxWindow* parent, bool pointsRight, const std::wstring& name, CActions actions);

    /** Whether there is anything to scroll to. */
    void SetUseful(bool useful);
    bool AcceptsFocus() const override { return false; }

  private:
    void SetPressed(bool pressed);
    void OnPaint();
    void OnTimer();

    bool m_pointsRight;
    CActions m_actions;
    bool m_isUseful = true, m_isHovered = false, m_isPressed = false;
    wxTimer m_timer;
};
