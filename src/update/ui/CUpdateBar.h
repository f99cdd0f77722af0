// SPDX-License-Identifier: MIT
#pragma once

#include <wx/panel.h>

#include <functional>
#include <string>

class wxTopLevelWindow;

/** A bar below a window's toolbars that tells of a new version. It takes no focus, and leaves the picture alone while the window
 * fills the screen. */
class CUpdateBar final : public wxPanel {
  public:
    struct CActions {
        std::function<void()> showMore;  ///< the user wants to know more
        std::function<void()> leave;     ///< and now does not
    };
    /** Shows the bar in a window whose panes have a manager. */
    CUpdateBar(wxTopLevelWindow& window, const std::wstring& version, CActions actions);
    ~CUpdateBar() override;
    /** Takes the bar from the window; the object is deleted when the event loop comes to it. */
    void Leave();

  private:
    void AddButton(wxSizer& row, const std::wstring& label, const std::function<void()>& press);
    void AddPane();
    /** Gives them the room that they want now: before they know the theme it may be less. */
    void FitButtons();
    /** Hides or shows the bar as the window fills the screen, or does so no longer. */
    void FollowWindow();
    void OnWindowSize(wxSizeEvent& event);

    wxTopLevelWindow& m_window;
    CActions m_actions;
};
