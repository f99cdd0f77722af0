// SPDX-License-Identifier: MIT
#pragma once

/** The events that an OpenGL canvas passes to the object that draws into it. Every slot does nothing unless
 * it is overridden. Mouse positions are window pixels with the origin at the top left. One thread, the
 * canvas's, calls all slots. The order of the slots is fixed; new ones go to the end. */
class CGLWindowHandler {
  public:
    CGLWindowHandler() = default;
    CGLWindowHandler(const CGLWindowHandler&) = delete;
    CGLWindowHandler& operator=(const CGLWindowHandler&) = delete;
    virtual ~CGLWindowHandler() = default;

    /** Draws the picture. The canvas's context is current; the canvas swaps its buffers afterwards. */
    virtual void OnPaint() {}
    virtual void OnLeftDown(int /*x*/, int /*y*/) {}
    virtual void OnMouseMove(int /*x*/, int /*y*/, const bool& /*leftDown*/) {}
    virtual void OnLeftUp(int /*x*/, int /*y*/) {}
    virtual void OnRightDown(int /*x*/, int /*y*/) {}
    virtual void OnRightUp(int /*x*/, int /*y*/) {}
    /** rotation is positive when the wheel turns away from the user. */
    virtual void OnWheel(int /*rotation*/) {}
    virtual void OnSize(int /*width*/, int /*height*/) {}
    virtual void OnKeyDown(int /*keyCode*/) {}
    /** One step of the automatic rotation. */
    virtual void OnRotationTick() {}
    /** Moves the animation to its next frame. True while there is animation to play; the canvas
     * then repaints. */
    virtual bool OnAnimationTick() { return false; }
    /** A drag that pans begins at a press of the middle button, or of the right one with Shift held (which
     * is then no OnRightDown), and ends with its release. */
    virtual void OnPanDown(int /*x*/, int /*y*/) {}
    /** False when the mouse has not moved since: then it was a click. */
    virtual bool OnPanUp() { return false; }
    /** The second press of the left button, after its OnLeftDown. */
    virtual void OnDoubleClick(int /*x*/, int /*y*/) {}
    /** The wheel was turned with Alt held; otherwise as OnWheel. */
    virtual void OnWheelAt(int /*x*/, int /*y*/, int /*rotation*/) {}
    /** Two fingers spread (factor above 1) or closed round a point, since the call before. */
    virtual void OnPinch(int /*x*/, int /*y*/, double /*factor*/) {}
    /** A key without Ctrl or Alt, after its OnKeyDown. True when it moved the model: nobody else shall have
     * it then. */
    virtual bool OnModelKey(int /*keyCode*/, bool /*shiftDown*/) { return false; }
    /** A key with Ctrl; otherwise as OnModelKey. */
    virtual bool OnPanKey(int /*keyCode*/, bool /*shiftDown*/) { return false; }
    /** Asked after OnPaint: false when the picture is not complete and must not be shown. */
    [[nodiscard]] virtual bool IsPictureComplete() const { return true; }
    /** Asked after OnPaint: how long the canvas waits at least before it lets the rotation or the animation go on. */
    [[nodiscard]] virtual int RestMs() const { return 1; }
};
