// SPDX-License-Identifier: MIT
#include "engine/gl/CPictureTarget.h"

#include <algorithm>
#include <new>
#include <utility>

#include "base/text/lng.h"
#include "engine/gl/gl_api.h"

namespace {

void FlipRows(CImage& image) {
    const std::size_t row = static_cast<std::size_t>(image.width) * 4;
    for (std::size_t top = 0, bottom = static_cast<std::size_t>(image.height); top + 1 < bottom; ++top) {
        --bottom;
        std::swap_ranges(image.rgba.begin() + static_cast<std::ptrdiff_t>(top * row),
                         image.rgba.begin() + static_cast<std::ptrdiff_t>((top + 1) * row),
                         image.rgba.begin() + static_cast<std::ptrdiff_t>(bottom * row));
    }
}

}  // namespace

CResult<CPictureTarget> CPictureTarget::Create(CGlCurrent& gl, int width, int height, int samples) {
    CPictureTarget made;
    CResult<CGlFramebuffer> drawn = CGlFramebuffer::Create(gl, width, height, samples);
    if (!drawn) return drawn.Error();
    made.m_target = std::move(drawn).Value();
    if (made.Samples() > 0) {
        CResult<CGlFramebuffer> plain = CGlFramebuffer::Create(gl, width, height, 0);
        if (!plain) return plain.Error();
        made.m_resolved = std::move(plain).Value();
    }
    made.Bind(gl);
    return made;
}

void CPictureTarget::Bind(CGlCurrent& gl) const {
    m_target.Bind(gl);
    glViewport(0, 0, Width(), Height());
}

CResult<CImage> CPictureTarget::ReadPixels(CGlCurrent& gl) const {
    CImage image{Width(), Height(), {}};
    try {
        image.rgba.resize(static_cast<std::size_t>(Width()) * static_cast<std::size_t>(Height()) * 4);
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("There is not enough memory for the picture"), ""};
    }
    m_target.Bind(gl);
    if (Samples() > 0) m_target.ResolveTo(gl, m_resolved);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, image.width, image.height, GL_RGBA, GL_UNSIGNED_BYTE, image.rgba.data());
    const bool failed = glGetError() == GL_OUT_OF_MEMORY;
    m_target.Bind(gl);
    if (failed) {
        return CError{EErrorCode::NoGraphics,
                      lng::Mark("The graphics system has not enough memory for the picture"), ""};
    }
    FlipRows(image);
    return image;
}
