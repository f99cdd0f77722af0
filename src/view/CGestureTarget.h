// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/C2DRect.h"
#include "view/CViewToolState.h"

/** What mouse gestures act upon: the scene that is shown, and the window round it. Coordinates are window
 * pixels, origin top left. */
class CGestureTarget {
  public:
    virtual ~CGestureTarget() = default;

    [[nodiscard]] virtual int ViewHeight() const = 0;
    /** The name of the node seen there, owned by the scene; null when there is none. */
    [[nodiscard]] virtual const char* PickNode(int x, int y) = 0;
    virtual void ZoomModel(int step) = 0;
    virtual void ZoomModel(const C2DRect& box) = 0;
    virtual void DeleteNode(const char* name) = 0;

    virtual void StartLongPress(int periodMs) = 0;
    virtual void StopLongPress() = 0;
    virtual void ShowCursor(EToolCursor cursor) = 0;
    /** Tells whoever owns the view that the left button went down. */
    virtual void TellLeftButtonDown() = 0;
    /** Brackets work on the scene outside of drawing; its end has the window repainted. */
    virtual void BeginWork() = 0;
    virtual void EndWork() = 0;
};
