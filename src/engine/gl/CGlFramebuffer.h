// SPDX-License-Identifier: MIT
#pragma once

#include "base/CResult.h"

class CGlCurrent;

/** One framebuffer object with an 8-bit RGBA colour and a depth buffer. Move-only; empty by default.
 * Destroyed while its context is current. */
class CGlFramebuffer {
  public:
    CGlFramebuffer() = default;
    CGlFramebuffer(CGlFramebuffer&& other) noexcept;
    CGlFramebuffer& operator=(CGlFramebuffer&& other) noexcept;
    ~CGlFramebuffer();

    /** samples: per pixel, 0 or 1 for no multisampling, at most as many as the context has. depthBits: 16, 24 or 32.
     * Leaves the framebuffer bound. */
    [[nodiscard]] static CResult<CGlFramebuffer> Create(CGlCurrent& gl, int width, int height, int samples,
                                                        int depthBits = 24);

    void Bind(CGlCurrent& gl) const;
    /** Copies the colours, samples averaged, to a framebuffer of the same size and leaves that one bound. */
    void ResolveTo(CGlCurrent& gl, const CGlFramebuffer& target) const;

    /** OpenGL's name of it. */
    [[nodiscard]] unsigned Id() const { return m_id; }
    [[nodiscard]] int Width() const { return m_width; }
    [[nodiscard]] int Height() const { return m_height; }
    [[nodiscard]] int Samples() const { return m_samples; }

  private:
    unsigned m_id = 0;
    unsigned m_color = 0, m_depth = 0;
    int m_width = 0, m_height = 0, m_samples = 0;
};
