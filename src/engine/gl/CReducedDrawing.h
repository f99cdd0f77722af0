// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "base/CResult.h"
#include "engine/gl/CGlFramebuffer.h"

class CGlCurrent;

/** Draws the pixels of the viewport into a smaller picture in memory, without samples, and blows it up. The picture begins
 * with the caller's clear colour; what the framebuffer has of depth does not change. Move-only; empty by default. */
class CReducedDrawing {
  public:
    /** divisor: of both sides, at least 1. Leaves the smaller picture bound and cleared, with its viewport. After a
     * failure all is as before. */
    [[nodiscard]] static CResult<CReducedDrawing> Begin(CGlCurrent& gl, int divisor);
    /** Copies what was drawn to the caller's framebuffer, and binds that again with its viewport. */
    void Finish(CGlCurrent& gl);

  private:
    CGlFramebuffer m_picture;
    std::array<int, 4> m_viewport{};
    int m_drawnTo = 0, m_readFrom = 0;  ///< the caller's framebuffers
};
