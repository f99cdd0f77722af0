// SPDX-License-Identifier: MIT
#include "engine/CBackdrop.h"

#include <array>
#include <exception>
#include <initializer_list>

#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/CGlStateGuard.h"
#include "engine/gl/gl_api.h"
#include "picture/cover_picture.h"

namespace {

bool IsOpaque(const CImage& image) {
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        if (image.rgba[i] != 255) return false;
    }
    return true;
}

}  // namespace

void CBackdrop::Draw(CGlCurrent& gl, const std::shared_ptr<const CImage>& image) {
    if (!image || image->IsEmpty()) return Clear(gl);
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    if (image != m_image || viewport[2] != m_width || viewport[3] != m_height)
        Fit(gl, image, viewport[2], viewport[3]);
    DrawTexture(gl, m_isExact ? ETextureFilter::Nearest : ETextureFilter::Bilinear);
}

void CBackdrop::DrawReduced(CGlCurrent& gl) {
    DrawTexture(gl, ETextureFilter::Trilinear);
}

void CBackdrop::Clear(CGlCurrent&) {
    m_texture = CGlTexture();
    m_image.reset();
}

void CBackdrop::Fit(CGlCurrent& gl, const std::shared_ptr<const CImage>& image, int width, int height) {
    const CGlCapabilities can = CGlCapabilities::Query(gl);
    m_hasShaders = can.shaders;
    m_image = image;
    m_width = width;
    m_height = height;
    m_isExact = can.anyTextureSize && width <= can.maxTextureSize && height <= can.maxTextureSize;
    m_texture = CGlTexture();
    const CGlStateGuard guard(gl, can.shaders);
    try {
        const CImage covered = CoverWithPicture(*image, width, height);
        m_isOpaque = IsOpaque(covered);
        m_texture.Fill(gl, can, covered, ETextureWrap::Clamp);
    } catch (const std::exception&) {
        m_texture = CGlTexture();  // without the memory for it the background stays plain
    }
}

void CBackdrop::DrawTexture(CGlCurrent& gl, ETextureFilter filter) {
    if (m_texture.IsEmpty()) return;
    const CGlStateGuard guard(gl, m_hasShaders);
    if (m_hasShaders) glUseProgram(0);
    for (const GLenum mode : std::initializer_list<GLenum>{GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(mode);
        glLoadIdentity();
    }
    for (const GLenum off : std::initializer_list<GLenum>{GL_LIGHTING, GL_DEPTH_TEST, GL_CULL_FACE, GL_FOG,
                                                          GL_ALPHA_TEST, GL_POLYGON_SMOOTH, GL_DITHER})
        glDisable(off);
    glDepthMask(GL_FALSE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    if (m_isOpaque) {
        glDisable(GL_BLEND);
    } else {
        glEnable(GL_BLEND);
    }
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    m_texture.Bind(gl, 0, filter);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glBegin(GL_QUADS);
    for (const auto& [x, y] : {std::array{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}}) {
        glTexCoord2f(x, 1 - y);
        glVertex2f(2 * x - 1, 2 * y - 1);
    }
    glEnd();
}
