// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "base/CResult.h"
#include "engine/gl/CGlFramebuffer.h"

class CGlCurrent;

/** Draws the pixels of the viewport into a smaller picture in memory, without samples, and blows it up. The picture begins
 * with the caller's clear colour; what the framebuffer has of depth does not change. Move-only. */
class CReducedDrawing {
  public:
    /** divisor: of both sides, at least 1. Leaves the smaller picture bound and cleared, with its viewport. After a
     * failure all is as before. */
    [[nodiscard]] static CResult<CReducedDrawing> Begin(CGlCurrent& gl, int divisor);
    /** Copies what was drawn to the caller's framebuffer, and binds that again with its viewport. */
    void Finish(CGlCurrent& gl);

  private:
    [[nodiscard]] CStatus MakePictures(CGlCurrent& gl, int divisor);
    void BindTheCallers() const;

    CGlFramebuffer m_picture;
    CGlFramebuffer m_blownUp;  ///< empty unless needed: nothing is blown up into samples
    std::array<int, 4> m_viewport{};
    int m_drawnTo = 0, m_readFrom = 0;  ///< the caller's framebuffers
};
