// SPDX-License-Identifier: MIT
#include "engine/gl/CReducedDrawing.h"

#include <algorithm>
#include <utility>

#include "engine/gl/gl_api.h"

namespace {

int Divided(int side, int divisor) {
    return std::max(1, (side + divisor - 1) / divisor);
}

}  // namespace

CResult<CReducedDrawing> CReducedDrawing::Begin(CGlCurrent& gl, int divisor) {
    CReducedDrawing made;
    glGetIntegerv(GL_VIEWPORT, made.m_viewport.data());
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &made.m_drawnTo);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &made.m_readFrom);
    const int width = Divided(made.m_viewport[2], divisor), height = Divided(made.m_viewport[3], divisor);
    CResult<CGlFramebuffer> picture = CGlFramebuffer::Create(gl, width, height, 0);
    if (!picture) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(made.m_drawnTo));
        glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(made.m_readFrom));
        return picture.Error();
    }
    made.m_picture = std::move(picture).Value();
    glViewport(0, 0, width, height);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    return made;
}

void CReducedDrawing::Finish(CGlCurrent& gl) {
    m_picture.Bind(gl);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(m_drawnTo));
    const auto [left, bottom, width, height] = m_viewport;
    const bool same = width == m_picture.Width() && height == m_picture.Height();
    glBlitFramebuffer(0, 0, m_picture.Width(), m_picture.Height(), left, bottom, left + width,
                      bottom + height, GL_COLOR_BUFFER_BIT, same ? GL_NEAREST : GL_LINEAR);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(m_readFrom));
    glViewport(left, bottom, width, height);
}
