// SPDX-License-Identifier: MIT
#pragma once

class CGLWindowHandler;
class wxWindow;

/** The OpenGL canvas as its handler sees it. Code that calls OpenGL outside a paint event calls BeginGL
 * before and EndGL after. The handler deletes the canvas after the engine. */
class CGLCanvasI {
  public:
    CGLCanvasI() = default;
    CGLCanvasI(const CGLCanvasI&) = delete;
    CGLCanvasI& operator=(const CGLCanvasI&) = delete;
    virtual ~CGLCanvasI() = default;

    /** Makes the canvas's context current; does nothing before the canvas is ready. */
    virtual void BeginGL() = 0;
    /** Ends what BeginGL began and asks for a repaint. */
    virtual void EndGL() = 0;
    /** False until the display server has created the window, some time after it was first shown. Until then
     * no context can be made current. */
    [[nodiscard]] virtual bool IsReady() const = 0;
    /** The window that shows the picture: mouse positions and the cursor refer to it. */
    [[nodiscard]] virtual wxWindow* GetWindow() = 0;
    /** Called after every attempt to open a model, before EndGL. */
    virtual void OnModelOpened() = 0;
    /** Turns rotation ticks for the handler on or off. Off at first. */
    virtual void SetRotating(bool rotating) = 0;

    /** Makes the canvas as a child of parent, with its events going to handler (not owned). Null when the
     * system has no OpenGL window to give. Defined by the window layer. */
    [[nodiscard]] static CGLCanvasI* Create(CGLWindowHandler* handler, wxWindow* parent);
};
