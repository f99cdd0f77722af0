// SPDX-License-Identifier: MIT
#pragma once

/** Proof that an OpenGL context is current. Functions that create GL objects or draw with them take one, so
 * the compiler checks that the caller has a current context. Only two classes can give one out: the offscreen
 * context, and the engine, whose callers promise that a context is current. */
class CGlCurrent {
  public:
    CGlCurrent(const CGlCurrent&) = delete;
    CGlCurrent& operator=(const CGlCurrent&) = delete;

  private:
    friend class COffscreenContext;
    friend class C3dsDisplayWrap;
    CGlCurrent() = default;
};
