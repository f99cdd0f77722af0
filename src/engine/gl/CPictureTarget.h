// SPDX-License-Identifier: MIT
#pragma once

#include "base/CResult.h"
#include "engine/gl/CGlFramebuffer.h"
#include "picture/CImage.h"

class CGlCurrent;

/** A picture in memory that OpenGL draws into, with as many samples as the context has. Move-only; empty by
 * default. Destroyed while its context is current. */
class CPictureTarget {
  public:
    /** samples: per pixel, 0 or 1 for no multisampling. Leaves the picture bound, with a viewport of the
     * whole picture. */
    [[nodiscard]] static CResult<CPictureTarget> Create(CGlCurrent& gl, int width, int height, int samples);

    /** Makes it the target of drawing, with a viewport of the whole picture. */
    void Bind(CGlCurrent& gl) const;
    /** What was drawn, samples averaged, alpha as drawn. Leaves it bound. */
    [[nodiscard]] CResult<CImage> ReadPixels(CGlCurrent& gl) const;

    [[nodiscard]] int Width() const { return m_target.Width(); }
    [[nodiscard]] int Height() const { return m_target.Height(); }
    [[nodiscard]] int Samples() const { return m_target.Samples(); }

  private:
    CGlFramebuffer m_target;
    CGlFramebuffer m_resolved;  ///< empty without samples
};
