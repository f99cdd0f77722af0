// SPDX-License-Identifier: MIT
#pragma once

/** The view's owner implements this to receive keys pressed while the view has the focus, and presses of the
 * mouse buttons. Called on the thread of the windows. The order of the three operations is fixed. */
class CKeyDownListener {
  public:
    /** keyCode is the toolkit's: 32 space, 8 back space, 27 Esc, 350 F11, ... */
    virtual void OnViewKeyDown(int keyCode) = 0;
    /** The left button went down in the view; called before the view repaints. */
    virtual void OnViewLeftButtonDown() = 0;
    /** The right button went down in the view. */
    virtual void OnViewRightButtonDown() = 0;

  protected:
    // The view never deletes its listener; a virtual destructor would take the first slot.
    ~CKeyDownListener() = default;
};
