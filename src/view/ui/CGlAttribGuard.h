// SPDX-License-Identifier: MIT
#pragma once

#include <GL/gl.h>

/** Saves all server attributes of the fixed pipeline (not the matrices) and restores them when it is
 * destroyed. A context must be current. */
class CGlAttribGuard {
  public:
    CGlAttribGuard() { glPushAttrib(GL_ALL_ATTRIB_BITS); }
    CGlAttribGuard(const CGlAttribGuard&) = delete;
    CGlAttribGuard& operator=(const CGlAttribGuard&) = delete;
    ~CGlAttribGuard() { glPopAttrib(); }
};

/** Pushes one matrix stack and pops it when it is destroyed. Leaves the matrix mode at that stack. */
class CGlMatrixGuard {
  public:
    explicit CGlMatrixGuard(GLenum mode) : m_mode(mode) {
        glMatrixMode(m_mode);
        glPushMatrix();
    }
    CGlMatrixGuard(const CGlMatrixGuard&) = delete;
    CGlMatrixGuard& operator=(const CGlMatrixGuard&) = delete;
    ~CGlMatrixGuard() {
        glMatrixMode(m_mode);
        glPopMatrix();
    }

  private:
    GLenum m_mode;
};
