// SPDX-License-Identifier: MIT
#include "engine/draw/CPacedDrawing.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/gl_api.h"
#include "engine/plan/CFrameBudget.h"

namespace {

// Measured with 1 million triangles: smaller portions wait more, larger ones store more.
constexpr std::uint32_t kMostTriangles = 50'000;
constexpr float kMostPixels = 2e6f;

void WaitAndDelete(GLsync fence) {
    constexpr GLuint64 kLongestWaitNs = 10'000'000'000;
    glClientWaitSync(fence, 0, kLongestWaitNs);
    glDeleteSync(fence);
}

}  // namespace

CPacedDrawing::CPacedDrawing(CGlCurrent&, const CGlCapabilities& can, const CDrawPace& pace)
    : m_active(can.software), m_fences(can.fences), m_pace(pace), m_beginMs(NowMs()) {}

CPacedDrawing::~CPacedDrawing() {
    if (m_previous) glDeleteSync(static_cast<GLsync>(m_previous));
}

std::uint32_t CPacedDrawing::PartsOf(std::uint32_t triangles, float pixels) const {
    if (!m_active) return 1;
    const float most = static_cast<float>(triangles) / 3 + 1;
    const auto forPixels = static_cast<std::uint32_t>(std::clamp(pixels / kMostPixels, 0.0f, most));
    return std::max(triangles / kMostTriangles, forPixels) + 1;
}

void CPacedDrawing::Drawn(std::uint32_t triangles, float pixels) {
    m_triangles += triangles;
    m_allTriangles += triangles;
    m_pixels += pixels;
    if (m_active && (m_triangles >= kMostTriangles || m_pixels >= kMostPixels)) EndPortion();
}

void CPacedDrawing::EndPortion() {
    m_triangles = 0;
    m_pixels = 0;
    if (m_fences) {
        void* before = std::exchange(m_previous, glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0));
        glFlush();
        if (before) WaitAndDelete(static_cast<GLsync>(before));
    } else {
        glFinish();
    }
    if (m_pace.moving) {
        m_ended = NowMs() - m_beginMs > CFrameBudget::kLatestMs;
    } else if (m_pace.interrupt != nullptr && *m_pace.interrupt) {
        m_ended = (*m_pace.interrupt)();
    }
}

double CPacedDrawing::Finish() {
    if (m_active) glFinish();
    return NowMs() - m_beginMs;
}

double CPacedDrawing::NowMs() const {
    if (m_pace.clock != nullptr && *m_pace.clock) return (*m_pace.clock)();
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(now).count();
}
