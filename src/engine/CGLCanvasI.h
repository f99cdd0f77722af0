// SPDX-License-Identifier: MIT
#pragma once

class CGLWindowHandler;
class wxWindow;

/** The OpenGL canvas as its handler sees it. Work that touches OpenGL outside a paint event stands between
 * BeginGL and EndGL. The handler's owner deletes the canvas after the engine. */
class CGLCanvasI {
  public:
    CGLCanvasI() = default;
    CGLCanvasI(const CGLCanvasI&) = delete;
    CGLCanvasI& operator=(const CGLCanvasI&) = delete;
    virtual ~CGLCanvasI() = default;

    /** Makes the canvas's context current; does nothing before the canvas is ready. */
    virtual void BeginGL() = 0;
    /** Ends work begun with BeginGL and has the window repainted. */
    virtual void EndGL() = 0;
    /** False until the window exists for the display server, which is some time after it was first shown:
     * until then no context can be made current. */
    [[nodiscard]] virtual bool IsReady() const = 0;
    /** The window that shows the picture: mouse positions and the cursor refer to it. */
    [[nodiscard]] virtual wxWindow* GetWindow() = 0;
    /** Told after every attempt to open a model, before EndGL. */
    virtual void OnModelOpened() = 0;
    /** Whether the handler gets rotation ticks. Off at first. */
    virtual void SetRotating(bool rotating) = 0;

    /** Makes the canvas as a child of parent, with its events going to handler (not owned). Null when the
     * system has no OpenGL window to give. Defined by the window layer. */
    [[nodiscard]] static CGLCanvasI* Create(CGLWindowHandler* handler, wxWindow* parent);
};
