// SPDX-License-Identifier: MIT
#pragma once

/** Proof that an OpenGL context is current. Functions that create, draw with or delete GL objects take one,
 * so the compiler asks whether a context is current. Only those who make a context current hand one out: the
 * offscreen context, the canvas, and the engine for its fixed interface, whose callers promise it. */
class CGlCurrent {
  public:
    CGlCurrent(const CGlCurrent&) = delete;
    CGlCurrent& operator=(const CGlCurrent&) = delete;

  private:
    friend class COffscreenContext;
    friend class C3dsDisplayWrap;
    CGlCurrent() = default;
};
