// SPDX-License-Identifier: MIT
#pragma once

#include <wx/panel.h>

#include <functional>

class wxBitmapButton;
class wxSlider;
class wxStaticText;

/** A play and pause button and a time slider for an animated scene. */
class CAnimationBar final : public wxPanel {
  public:
    /** Called when the user presses the button or moves the slider. */
    struct CActions {
        std::function<void(bool)> setPlaying;
        std::function<void(int)> setFrame;
    };
    CAnimationBar(wxWindow* parent, CActions actions);

    /** Frames first to last, both inclusive. */
    void SetRange(int first, int last);
    void ShowFrame(int frame);
    void ShowPlaying(bool playing);
    void TakeFocus();

  private:
    void ShowText(int frame);

    CActions m_actions;
    bool m_playing = false;
    wxBitmapButton* m_play;
    wxSlider* m_slider;
    wxStaticText* m_text;
};
