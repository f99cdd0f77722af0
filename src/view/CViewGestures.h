// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "base/math/C2DRect.h"
#include "view/CGestureTarget.h"
#include "view/CTrackBallMotion.h"

/** A point in whole pixels. */
struct CPixel {
    int x = 0, y = 0;
    friend bool operator==(const CPixel&, const CPixel&) = default;
};

/** Idle -> Pending (pressed; the trackball starts at the next repaint) -> Dragging -> Idle. */
enum class EDragState { Idle = 0, Pending = 1, Dragging = 2 };

/** Turns presses, moves and wheel turns into a trackball drag, a zoom box, the use of a tool or the deletion
 * of a node. Needs no window: it receives input through its functions and acts on its target.
 *
 * A drag starts at the first repaint after the press, because the trackball needs the matrices of that
 * repaint: the drawing code calls TakePendingDrag and starts the trackball. */
class CViewGestures {
  public:
    /** How long a press must last, and how far it may stray, to delete a node. */
    static constexpr int kLongPressMs = 500;
    static constexpr int kLongPressSlopPx = 2;
    /** The step of a wheel turn away from the scene; towards it is its negative. */
    static constexpr int kWheelStep = 20;

    /** All three must outlive it; tools may be null. */
    CViewGestures(CGestureTarget& target, CTrackBallMotion& trackBall, CViewToolState* tools);

    void LeftDown(int x, int y, bool controlDown);
    void Move(int x, int y, bool leftDown);
    void LeftUp(int x, int y);
    /** Asks for no repaint: a canvas repaints after every turn of the wheel. */
    void Wheel(int rotation);
    /** The long-press timer ran out with the mouse at (x, y). */
    void LongPress(int x, int y);
    /** Ends a drag and resets the trackball's rotation. */
    void ResetTrackBall();

    /** To be called in each repaint: where the trackball must start (y upwards), once for each drag. */
    [[nodiscard]] std::optional<CPixel> TakePendingDrag();

    [[nodiscard]] EDragState DragState() const { return m_dragState; }
    /** y upwards; (0, 0) while idle. */
    [[nodiscard]] CPixel DragPoint() const { return m_dragPoint; }
    /** Start corner and current corner as dragged; nothing while no zoom box is drawn. */
    [[nodiscard]] const std::optional<C2DRect>& ZoomBox() const { return m_zoomBox; }

  private:
    [[nodiscard]] CPixel Flipped(int x, int y) const { return {x, m_target.ViewHeight() - y - 1}; }
    [[nodiscard]] bool UseTool(int x, int y);
    void FinishDrag(int x, int y);
    void Follow(CPixel point);

    CGestureTarget& m_target;
    CTrackBallMotion& m_trackBall;
    CViewToolState* m_tools;

    EDragState m_dragState = EDragState::Idle;
    CPixel m_dragPoint;
    CPixel m_pressPoint;
    std::optional<C2DRect> m_zoomBox;
};
