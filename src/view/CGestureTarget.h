// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/C2DRect.h"
#include "view/CViewToolState.h"

/** What mouse gestures act on: the scene that is shown, and the view's window. Coordinates are window pixels,
 * origin top left. */
class CGestureTarget {
  public:
    virtual ~CGestureTarget() = default;

    [[nodiscard]] virtual int ViewHeight() const = 0;
    /** The name of the node seen at a point, owned by the scene and valid until it is edited; null
     * for none. */
    [[nodiscard]] virtual const char* PickNode(int x, int y) = 0;
    virtual void ZoomModel(int step) = 0;
    virtual void ZoomModel(const C2DRect& box) = 0;
    /** As ZoomModel, with what is seen at the point staying there. */
    virtual void ZoomModelAt(int step, int x, int y) = 0;
    /** Moves the model by pixels, to the right and down. */
    virtual void PanModel(int dx, int dy) = 0;
    /** Turns the model about the view's own axes: what is in front goes to the right and up, by degrees. */
    virtual void TurnModel(double rightDeg, double upDeg) = 0;
    /** Brings the point of the model that is seen there to the middle of the view. False when none is. */
    virtual bool CenterModelAt(int x, int y) = 0;
    virtual void DeleteNode(const char* name) = 0;

    virtual void StartLongPress(int periodMs) = 0;
    virtual void StopLongPress() = 0;
    virtual void ShowCursor(EToolCursor cursor) = 0;
    /** Tells the view's owner that the left button went down. */
    virtual void TellLeftButtonDown() = 0;
    /** Enclose work on the scene outside of drawing; EndWork repaints the window. */
    virtual void BeginWork() = 0;
    virtual void EndWork() = 0;
};
