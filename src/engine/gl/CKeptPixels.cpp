// SPDX-License-Identifier: MIT
#include "engine/gl/CKeptPixels.h"

#include <array>
#include <utility>

#include "engine/gl/gl_api.h"

namespace {

/** The framebuffers that are bound, and where in them the viewport lies. */
struct CBound {
    GLint drawn = 0, read = 0;
    std::array<int, 4> viewport{};

    CBound() {
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawn);
        glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &read);
        glGetIntegerv(GL_VIEWPORT, viewport.data());
    }
    void BindAgain() const {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(drawn));
        glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(read));
    }
    /** The store's lower and upper row. Mesa keeps the rows of a window from the top and those of a framebuffer object from the
     * bottom; turned over, they are copied as they lie. */
    [[nodiscard]] std::pair<int, int> Rows() const {
        return drawn == 0 ? std::pair(viewport[3], 0) : std::pair(0, viewport[3]);
    }
};

constexpr GLbitfield kAll = GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT;

}  // namespace

bool CKeptPixels::Keep(CGlCurrent& gl) {
    const CBound bound;
    const auto [x, y, width, height] = bound.viewport;
    GLint samples = 0, depthBits = 0;
    glGetIntegerv(GL_SAMPLES, &samples);
    glGetIntegerv(GL_DEPTH_BITS, &depthBits);  // only depths of one kind are copied
    if (samples > 1) return false;
    if (m_store.Width() != width || m_store.Height() != height) {
        CResult<CGlFramebuffer> made = CGlFramebuffer::Create(gl, width, height, 0, depthBits);
        bound.BindAgain();
        if (!made) return false;
        m_store = std::move(made).Value();
    }
    (void)glGetError();
    const auto [from, to] = bound.Rows();
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(bound.drawn));
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_store.Id());
    glBlitFramebuffer(x, y, x + width, y + height, 0, from, width, to, kAll, GL_NEAREST);
    bound.BindAgain();
    return glGetError() == GL_NO_ERROR;
}

void CKeptPixels::PutBack(CGlCurrent&) const {
    const CBound bound;
    const auto [x, y, width, height] = bound.viewport;
    const auto [from, to] = bound.Rows();
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_store.Id());
    glBlitFramebuffer(0, from, width, to, x, y, x + width, y + height, kAll, GL_NEAREST);
    bound.BindAgain();
}
