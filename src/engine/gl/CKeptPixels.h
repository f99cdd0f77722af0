// SPDX-License-Identifier: MIT
#pragma once

#include "engine/gl/CGlFramebuffer.h"

class CGlCurrent;

/** Colours and depths of a picture that is not done, to go on from there again and again. Move-only; destroyed while its
 * context is current. */
class CKeptPixels {
  public:
    /** Copies the pixels of the viewport from the bound framebuffer. False where the system refuses: a framebuffer with samples,
     * or with depths of another kind. Then nothing is kept. Leaves the same framebuffer bound. */
    [[nodiscard]] bool Keep(CGlCurrent& gl);
    /** Copies what was kept to the viewport of the bound framebuffer, which must be the one that it came from. */
    void PutBack(CGlCurrent& gl) const;

  private:
    CGlFramebuffer m_store;
};
