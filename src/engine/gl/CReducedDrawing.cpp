// SPDX-License-Identifier: MIT
#include "engine/gl/CReducedDrawing.h"

#include <algorithm>
#include <utility>

#include "engine/gl/gl_api.h"

namespace {

int Divided(int side, int divisor) {
    return std::max(1, (side + divisor - 1) / divisor);
}

/** Copies all of the bound picture for reading to a place of the bound one for drawing. */
void Copy(const CGlFramebuffer& from, int left, int bottom, int width, int height) {
    const bool same = width == from.Width() && height == from.Height();
    glBlitFramebuffer(0, 0, from.Width(), from.Height(), left, bottom, left + width, bottom + height,
                      GL_COLOR_BUFFER_BIT, same ? GL_NEAREST : GL_LINEAR);
}

}  // namespace

CResult<CReducedDrawing> CReducedDrawing::Begin(CGlCurrent& gl, int divisor) {
    CReducedDrawing made;
    glGetIntegerv(GL_VIEWPORT, made.m_viewport.data());
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &made.m_drawnTo);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &made.m_readFrom);
    if (const CStatus status = made.MakePictures(gl, divisor); !status) {
        made.BindTheCallers();
        return status.Error();
    }
    made.m_picture.Bind(gl);
    glViewport(0, 0, made.m_picture.Width(), made.m_picture.Height());
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    return made;
}

CStatus CReducedDrawing::MakePictures(CGlCurrent& gl, int divisor) {
    GLint samples = 0;
    glGetIntegerv(GL_SAMPLES, &samples);
    const int width = m_viewport[2], height = m_viewport[3];
    CResult<CGlFramebuffer> picture =
        CGlFramebuffer::Create(gl, Divided(width, divisor), Divided(height, divisor), 0);
    if (!picture) return picture.Error();
    m_picture = std::move(picture).Value();
    if (samples == 0 || divisor == 1) return CDone{};
    CResult<CGlFramebuffer> blownUp = CGlFramebuffer::Create(gl, width, height, 0);
    if (!blownUp) return blownUp.Error();
    m_blownUp = std::move(blownUp).Value();
    return CDone{};
}

void CReducedDrawing::BindTheCallers() const {
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(m_drawnTo));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(m_readFrom));
}

void CReducedDrawing::Finish(CGlCurrent& gl) {
    const auto [left, bottom, width, height] = m_viewport;
    if (m_blownUp.Width() > 0) {
        m_blownUp.Bind(gl);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, m_picture.Id());
        Copy(m_picture, 0, 0, width, height);
    }
    const CGlFramebuffer& last = m_blownUp.Width() > 0 ? m_blownUp : m_picture;
    last.Bind(gl);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(m_drawnTo));
    Copy(last, left, bottom, width, height);
    BindTheCallers();
    glViewport(left, bottom, width, height);
}
