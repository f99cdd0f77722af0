// SPDX-License-Identifier: MIT
#include "engine/gl/CGlFramebuffer.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/text/lng.h"
#include "engine/gl/gl_api.h"

namespace {

unsigned MakeStorage(GLenum format, GLenum attachment, int width, int height, int samples) {
    unsigned id = 0;
    glGenRenderbuffers(1, &id);
    glBindRenderbuffer(GL_RENDERBUFFER, id);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, id);
    return id;
}

}  // namespace

CGlFramebuffer::CGlFramebuffer(CGlFramebuffer&& other) noexcept {
    *this = std::move(other);
}

CGlFramebuffer& CGlFramebuffer::operator=(CGlFramebuffer&& other) noexcept {
    std::swap(m_id, other.m_id);
    std::swap(m_color, other.m_color);
    std::swap(m_depth, other.m_depth);
    std::swap(m_width, other.m_width);
    std::swap(m_height, other.m_height);
    std::swap(m_samples, other.m_samples);
    return *this;
}

CGlFramebuffer::~CGlFramebuffer() {
    if (m_id == 0) return;
    glDeleteFramebuffers(1, &m_id);
    glDeleteRenderbuffers(1, &m_color);
    glDeleteRenderbuffers(1, &m_depth);
}

CResult<CGlFramebuffer> CGlFramebuffer::Create(CGlCurrent&, int width, int height, int samples,
                                               int depthBits) {
    GLint maxSide = 0, maxSamples = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &maxSide);
    glGetIntegerv(GL_MAX_SAMPLES, &maxSamples);
    if (width < 1 || height < 1)
        return CError{EErrorCode::BadArgument, lng::Mark("A picture needs a width and a height"), ""};
    if (width > maxSide || height > maxSide) {
        return CError{
            EErrorCode::TooLarge,
            "The graphics system draws pictures of at most " + std::to_string(maxSide) + " pixels a side",
            ""};
    }
    CGlFramebuffer result;
    result.m_width = width;
    result.m_height = height;
    result.m_samples = samples > 1 ? std::min(samples, maxSamples) : 0;
    glGenFramebuffers(1, &result.m_id);
    glBindFramebuffer(GL_FRAMEBUFFER, result.m_id);
    result.m_color = MakeStorage(GL_RGBA8, GL_COLOR_ATTACHMENT0, width, height, result.m_samples);
    const GLenum depth = depthBits > 24   ? GL_DEPTH_COMPONENT32
                         : depthBits > 16 ? GL_DEPTH_COMPONENT24
                                          : GL_DEPTH_COMPONENT16;
    result.m_depth = MakeStorage(depth, GL_DEPTH_ATTACHMENT, width, height, result.m_samples);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        return CError{EErrorCode::NoGraphics, lng::Mark("The graphics system refuses to draw into memory"),
                      ""};
    }
    return result;
}

void CGlFramebuffer::Bind(CGlCurrent&) const {
    glBindFramebuffer(GL_FRAMEBUFFER, m_id);
}

void CGlFramebuffer::ResolveTo(CGlCurrent&, const CGlFramebuffer& target) const {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_id);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, target.m_id);
    glBlitFramebuffer(0, 0, m_width, m_height, 0, 0, m_width, m_height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_FRAMEBUFFER, target.m_id);
}
