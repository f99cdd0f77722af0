// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

class CGlCurrent;
struct CGlCapabilities;

/** Hands a software renderer its work in portions. Left alone it keeps every triangle of a frame, with all
 * that a pixel of it needs, and starts on the pixels late; in portions it draws the pixels of one while the
 * next is set up, and stores two. On other renderers it does nothing. Lives for one frame. */
class CPacedDrawing {
  public:
    CPacedDrawing(CGlCurrent& gl, const CGlCapabilities& can);
    CPacedDrawing(const CPacedDrawing&) = delete;
    CPacedDrawing& operator=(const CPacedDrawing&) = delete;
    ~CPacedDrawing();

    /** That many triangles were drawn. */
    void Drawn(std::uint32_t triangles);

  private:
    bool m_active;
    bool m_fences;                ///< otherwise each portion is waited for
    std::uint32_t m_pending = 0;  ///< triangles of the portion that grows
    void* m_previous = nullptr;   ///< GLsync of the portion before
};
