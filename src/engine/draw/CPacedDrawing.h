// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

class CGlCurrent;
struct CGlCapabilities;

/** Gives a software renderer its work in portions. Otherwise the renderer stores all triangles of a picture
 * and begins late to fill pixels; with portions it fills the pixels of one while the next is set up, and
 * stores only two. Does nothing on other renderers. Lives for one drawing of the view. */
class CPacedDrawing {
  public:
    CPacedDrawing(CGlCurrent& gl, const CGlCapabilities& can);
    CPacedDrawing(const CPacedDrawing&) = delete;
    CPacedDrawing& operator=(const CPacedDrawing&) = delete;
    ~CPacedDrawing();

    /** To be called after each draw call with its number of triangles. */
    void Drawn(std::uint32_t triangles);

  private:
    bool m_active;
    bool m_fences;                ///< otherwise each portion is waited for
    std::uint32_t m_pending = 0;  ///< triangles of the portion that grows
    void* m_previous = nullptr;   ///< GLsync of the portion before
};
