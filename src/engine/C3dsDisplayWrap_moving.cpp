// SPDX-License-Identifier: MIT
#include <utility>

#include "engine/C3dsDisplayState.h"

void C3dsDisplayWrap::SetMoving(bool moving) {
    m_state->moving = moving;
}

bool C3dsDisplayWrap::IsLastFrameWhole() const {
    return m_state->wholeFrame;
}

bool C3dsDisplayWrap::WorkOnLevels() {
    return false;
}

void C3dsDisplayWrap::SetInterrupt(std::function<bool()> wanted) {
    m_state->interrupt = std::move(wanted);
}
