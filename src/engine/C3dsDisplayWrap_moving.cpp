// SPDX-License-Identifier: MIT
#include <utility>

#include "engine/C3dsDisplayState.h"
#include "engine/gl/CGlCurrent.h"

CDrawPace C3dsDisplayWrap::CState::Pace() const {
    if (options.exact) return {};
    return {moving, &interrupt, &frameClock};
}

void C3dsDisplayWrap::SetMoving(bool moving) {
    m_state->moving = moving;
    m_state->renderer.PauseLevels(moving);
}

bool C3dsDisplayWrap::IsLastFrameWhole() const {
    return m_state->wholeFrame;
}

bool C3dsDisplayWrap::WorkOnLevels() {
    CState& state = *m_state;
    if (!state.scene || state.moving || state.gpu != CState::EGpu::Ready) return false;
    CGlCurrent gl;
    return state.renderer.WorkOnLevels(gl, state.prepared, state.options);
}

void C3dsDisplayWrap::SetInterrupt(std::function<bool()> wanted) {
    m_state->interrupt = std::move(wanted);
}

void C3dsDisplayWrap::SetFrameClock(std::function<double()> nowMs) {
    m_state->frameClock = std::move(nowMs);
}
