// SPDX-License-Identifier: MIT
#include "engine/draw/CPacedDrawing.h"

#include <utility>

#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/gl_api.h"

namespace {

// Measured with 1 million triangles: smaller portions wait more, larger ones store more.
constexpr std::uint32_t kPortion = 50'000;

void WaitAndDelete(GLsync fence) {
    constexpr GLuint64 kLongestWaitNs = 10'000'000'000;
    glClientWaitSync(fence, 0, kLongestWaitNs);
    glDeleteSync(fence);
}

}  // namespace

CPacedDrawing::CPacedDrawing(CGlCurrent&, const CGlCapabilities& can)
    : m_active(can.software), m_fences(can.fences) {}

CPacedDrawing::~CPacedDrawing() {
    if (m_previous) glDeleteSync(static_cast<GLsync>(m_previous));
}

void CPacedDrawing::Drawn(std::uint32_t triangles) {
    m_pending += triangles;
    if (!m_active || m_pending < kPortion) return;
    m_pending = 0;
    if (!m_fences) {
        glFinish();
        return;
    }
    void* before = std::exchange(m_previous, glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0));
    glFlush();
    if (before) WaitAndDelete(static_cast<GLsync>(before));
}
