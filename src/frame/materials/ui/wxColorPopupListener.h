// SPDX-License-Identifier: MIT
#pragma once

class wxColour;

/** Is told what is chosen in a wxColourPopup. Called on the thread of the windows. */
class wxColorPopupListener {
  public:
    /** Another colour is chosen; called again and again while the mouse is moved over the colours. */
    virtual void OnColorChosen(const wxColour& color) = 0;
    /** The popup has closed: the choice is made. */
    virtual void OnColorPopupClosed() = 0;

  protected:
    // The popup never deletes its listener.
    ~wxColorPopupListener() = default;
};
