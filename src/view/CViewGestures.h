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

/** What a key does with the model. */
enum class EViewKey {
    TurnLeft,
    TurnRight,
    TurnUp,
    TurnDown,
    ZoomIn,
    ZoomOut,
    PanLeft,
    PanRight,
    PanUp,
    PanDown
};

/** What a key of the toolkit's does. */
struct CModelKey {
    int keyCode;
    EViewKey key;
};

/** Turns presses, moves, wheel turns and keys into a trackball drag, a pan, zooming, the use of a tool or the
 * deletion of a node. Needs no window: it receives input through its functions and acts on its target.
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
    /** Of a key: how far it turns, how far it zooms, and the part of it that a fine step is. */
    static constexpr double kKeyDeg = 10;
    static constexpr int kKeyStep = 20;
    static constexpr int kFineShare = 5;
    /** A key pans by this part of the view's height. */
    static constexpr int kPanShare = 12;

    /** All three must outlive it; tools may be null. */
    CViewGestures(CGestureTarget& target, CTrackBallMotion& trackBall, CViewToolState* tools);

    void LeftDown(int x, int y, bool controlDown);
    void Move(int x, int y, bool leftDown);
    void LeftUp(int x, int y);
    /** Asks for no repaint: a canvas repaints after every turn of the wheel. */
    void Wheel(int rotation);
    /** A drag that pans begins: with the middle button, or the right one and Shift held. Ignored while
     * another drag is under way. */
    void PanDown(int x, int y);
    /** True if the mouse has moved since PanDown. */
    bool PanUp();
    /** A turn of the wheel with Alt held, or two fingers that spread: zooms to the pointer. */
    void WheelAt(int x, int y, int rotation);
    /** factor: how much larger what is seen is to become. */
    void Pinch(int x, int y, double factor);
    void Key(EViewKey key, bool fine);
    /** To be called after LeftDown for the second press. Unless a tool is active, what is under the pointer
     * comes to the middle of the view. */
    void DoubleClick(int x, int y);
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
    /** A button is held that turns, pans or draws a box. */
    [[nodiscard]] bool IsHeld() const {
        return m_dragState != EDragState::Idle || m_zoomBox.has_value() || m_pan.has_value();
    }

  private:
    [[nodiscard]] CPixel Flipped(int x, int y) const { return {x, m_target.ViewHeight() - y - 1}; }
    [[nodiscard]] bool UseTool(int x, int y);
    [[nodiscard]] bool IsNearPress(int x, int y) const;
    void FinishDrag(int x, int y);
    void Follow(CPixel point);
    void PanTo(CPixel point);

    CGestureTarget& m_target;
    CTrackBallMotion& m_trackBall;
    CViewToolState* m_tools;

    EDragState m_dragState = EDragState::Idle;
    CPixel m_dragPoint;
    CPixel m_pressPoint;
    bool m_hasMissed = false;  ///< the press under way met no node with a tool, and has not moved since
    std::optional<C2DRect> m_zoomBox;
    struct CPan {
        CPixel last;
        bool hasMoved = false;
    };
    std::optional<CPan> m_pan;
    double m_pinched = 0;  ///< the rest of a step of two fingers
};
