// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "engine/CGLWindowHandler.h"

class C3dsDisplayWrap;
class CGLCanvasI;

/** Passes what the canvas tells to a display engine: paints the scene, zooms with the wheel, sets the size,
 * turns the scene and plays its animation. Owns the engine and, once SetCanvas was called, the canvas. */
class C3DSWindowHandler : public CGLWindowHandler {
  public:
    /** Creates the engine. */
    C3DSWindowHandler();
    /** engine must not be null. */
    explicit C3DSWindowHandler(std::unique_ptr<C3dsDisplayWrap> engine);
    /** Closes the model with the canvas's context current, then deletes the engine, then the canvas. */
    ~C3DSWindowHandler() override;

    /** Takes ownership of the canvas. Without one (null) the handler makes no OpenGL context current. */
    void SetCanvas(std::unique_ptr<CGLCanvasI> canvas);
    [[nodiscard]] CGLCanvasI* GetCanvas() const { return m_canvas.get(); }
    [[nodiscard]] C3dsDisplayWrap& GetEngine() const { return *m_engine; }

    void OnPaint() override;
    void OnLeftDown(int x, int y) override;
    void OnMouseMove(int x, int y, const bool& leftDown) override;
    void OnWheel(int rotation) override;
    void OnSize(int width, int height) override;
    void OnRotationTick() override;
    bool OnAnimationTick() override;

  protected:
    /** Where the mouse was at the last press, or at the last move with the left button down. */
    int m_mouseX = 0;
    int m_mouseY = 0;

  private:
    std::unique_ptr<CGLCanvasI> m_canvas;  // before the engine, so that it is deleted after it
    std::unique_ptr<C3dsDisplayWrap> m_engine;
};
