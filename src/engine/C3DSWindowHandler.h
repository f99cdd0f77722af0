// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "engine/CGLWindowHandler.h"

class C3dsDisplayWrap;
class CGLCanvasI;

/** A window handler that shows a display engine: paints it, zooms it with the wheel, sizes and turns it. Owns
 * the engine and, once given, the canvas. */
class C3DSWindowHandler : public CGLWindowHandler {
  public:
    /** Makes an engine of its own. */
    C3DSWindowHandler();
    /** engine must not be null. */
    explicit C3DSWindowHandler(std::unique_ptr<C3dsDisplayWrap> engine);
    /** Closes the model with the canvas's context current, then deletes the engine, then the canvas. */
    ~C3DSWindowHandler() override;

    /** Takes the canvas made for this handler; it may be null, and nothing is then made current. */
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
    /** The last position of a press, or of a move with the left button down. */
    int m_mouseX = 0;
    int m_mouseY = 0;

  private:
    std::unique_ptr<CGLCanvasI> m_canvas;  // before the engine, so that it is deleted after it
    std::unique_ptr<C3dsDisplayWrap> m_engine;
};
