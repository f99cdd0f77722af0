// SPDX-License-Identifier: MIT
#pragma once

#include <wx/gdicmn.h>

class wxDC;
class wxWindow;

/** The look of the buttons that scroll the model list: flat, with an arrow, in the colours of the desktop's theme. */
class CButtonScrollArt {
  public:
    struct CState {
        bool pointsRight = false;
        bool isEnabled = true;
        bool isHovered = false;
        bool isPressed = false;
    };
    /** Fills the whole place. */
    static void Draw(wxDC& dc, const wxWindow& window, const wxRect& place, const CState& state);
    /** The width that a button needs; its height is that of the list. */
    [[nodiscard]] static int Width(const wxWindow& window);
};
