// SPDX-License-Identifier: MIT
#pragma once

#include <array>

class CGlCurrent;

/** Saves the OpenGL state that drawing a scene changes (server and client attributes, both matrices, the
 * program) and puts it back when the scope ends. Inside, GL_MODELVIEW is the current matrix mode. */
class CGlStateGuard {
  public:
    CGlStateGuard(CGlCurrent& gl, bool hasShaders);
    CGlStateGuard(const CGlStateGuard&) = delete;
    CGlStateGuard& operator=(const CGlStateGuard&) = delete;
    ~CGlStateGuard();

  private:
    bool m_hasShaders;
    int m_program = 0;
    // Saved here because the caller may have used up the projection stack, which is small.
    std::array<float, 16> m_projection{};
};
