// SPDX-License-Identifier: MIT
#include "engine/C3DSWindowHandler.h"

#include <utility>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"

C3DSWindowHandler::C3DSWindowHandler() : m_engine(std::make_unique<C3dsDisplayWrap>()) {}

C3DSWindowHandler::C3DSWindowHandler(std::unique_ptr<C3dsDisplayWrap> engine) : m_engine(std::move(engine)) {}

C3DSWindowHandler::~C3DSWindowHandler() {
    if (m_canvas) m_canvas->BeginGL();
    m_engine->CloseModel();
    m_engine.reset();
    m_canvas.reset();
}

void C3DSWindowHandler::SetCanvas(std::unique_ptr<CGLCanvasI> canvas) {
    m_canvas = std::move(canvas);
}

void C3DSWindowHandler::OnPaint() {
    m_engine->PaintModel();
}

void C3DSWindowHandler::OnLeftDown(int x, int y) {
    m_mouseX = x;
    m_mouseY = y;
}

void C3DSWindowHandler::OnMouseMove(int x, int y, const bool& leftDown) {
    if (!leftDown) return;
    m_mouseX = x;
    m_mouseY = y;
}

void C3DSWindowHandler::OnWheel(int rotation) {
    m_engine->ZoomModel(rotation < 1 ? 20 : -20);
}

void C3DSWindowHandler::OnSize(int width, int height) {
    m_engine->SetPreviewSize(C2DRect(0, 0, width, height));
}

void C3DSWindowHandler::OnRotationTick() {
    m_engine->UpdateRotAngles(1.0f, 0.0f);
}

bool C3DSWindowHandler::OnAnimationTick() {
    if (m_canvas) m_canvas->BeginGL();
    return m_engine->DrawAnimations();
}
