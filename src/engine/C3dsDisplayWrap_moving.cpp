// SPDX-License-Identifier: MIT
#include <utility>

#include "engine/C3dsDisplayState.h"
#include "engine/gl/CGlCurrent.h"
#include "engine/gl/CReducedDrawing.h"

CDrawPace C3dsDisplayWrap::CState::Pace() const {
    if (options.exact) return {};
    return {moving, &interrupt, &frameClock, following};
}

void C3dsDisplayWrap::CState::DrawScene(CGlCurrent& gl) {
    wholeFrame = renderer.Draw(gl, prepared, options, Pace());
    DrawOverlays(gl, prepared, overlays);
}

void C3dsDisplayWrap::CState::DrawBackground(CGlCurrent& gl) {
    CBehind now{seen.background, seen.backgroundImage};
    if (now != behind) renderer.ForgetKept();
    behind = std::move(now);
    backdrop.Draw(gl, seen.backgroundImage);
}

void C3dsDisplayWrap::CState::DrawInTime(CGlCurrent& gl) {
    reduction = renderer.ReductionFor(gl, prepared, options, Pace());
    DropWhatWasUploaded();
    if (reduction > 0) {
        CResult<CReducedDrawing> smaller = CReducedDrawing::Begin(gl, reduction);
        if (smaller) {
            if (seen.backgroundImage) backdrop.DrawReduced(gl);
            DrawScene(gl);
            wholeFrame = wholeFrame && !Pace().moving;
            return smaller.Value().Finish(gl);
        }
        reduction = 0;
    }
    DrawScene(gl);
}

void C3dsDisplayWrap::SetMoving(bool moving) {
    m_state->moving = moving;
    m_state->renderer.PauseLevels(moving || m_state->following);
}

void C3dsDisplayWrap::SetFollowing(bool following) {
    m_state->following = following;
    m_state->renderer.PauseLevels(following || m_state->moving);
}

bool C3dsDisplayWrap::IsLastFrameWhole() const {
    return m_state->wholeFrame;
}

int C3dsDisplayWrap::GetLastReduction() const {
    return m_state->reduction;
}

bool C3dsDisplayWrap::WorkOnLevels() {
    CState& state = *m_state;
    if (!state.scene || state.moving || state.gpu != CState::EGpu::Ready) return false;
    CGlCurrent gl;
    return state.renderer.WorkOnLevels(gl, state.prepared, state.options);
}

bool C3dsDisplayWrap::GetReadyFor(const CPreparedScene& kinds) {
    CGlCurrent gl;
    return m_state->renderer.GetReadyFor(gl, kinds, m_state->options);
}

void C3dsDisplayWrap::SetInterrupt(std::function<bool()> wanted) {
    m_state->interrupt = std::move(wanted);
}

void C3dsDisplayWrap::SetFrameClock(std::function<double()> nowMs) {
    m_state->frameClock = std::move(nowMs);
}
