// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>

class CGlCurrent;
struct CGlCapabilities;

/** When a drawing of the view ends before it is whole. Has no effect on hardware. */
struct CDrawPace {
    bool moving = false;  ///< it ends when CFrameBudget::kLatestMs have passed
    /** At rest: asked between two portions; true ends the drawing. May be null or empty; not owned. */
    const std::function<bool()>* interrupt = nullptr;
    /** Tells the time in milliseconds since any moment. May be null or empty, for the steady clock; not owned. */
    const std::function<double()>* clock = nullptr;
    /** An edit follows the user's hand: what it does not change may be drawn once and kept for the next pictures. */
    bool follows = false;
};

/** Gives a software renderer its work in portions. Otherwise the renderer stores all triangles of a picture
 * and begins late to fill pixels; with portions it fills the pixels of one while the next is set up, and
 * stores only two. Between portions a drawing can end. Does nothing on other renderers. Lives for one drawing of the
 * view. */
class CPacedDrawing {
  public:
    CPacedDrawing(CGlCurrent& gl, const CGlCapabilities& can, const CDrawPace& pace);
    CPacedDrawing(const CPacedDrawing&) = delete;
    CPacedDrawing& operator=(const CPacedDrawing&) = delete;
    ~CPacedDrawing();

    /** In how many draw calls so much is best drawn. */
    [[nodiscard]] std::uint32_t PartsOf(std::uint32_t triangles, float pixels) const;
    /** To be called after each draw call with its number of triangles, and of pixels, about. */
    void Drawn(std::uint32_t triangles, float pixels);
    /** True once nothing more is to be drawn. */
    [[nodiscard]] bool HasEnded() const { return m_ended; }
    /** All that were drawn. */
    [[nodiscard]] double Triangles() const { return m_allTriangles; }
    /** Waits for all that was drawn, where that is software's work. Returns the milliseconds since the beginning. */
    double Finish();

  private:
    [[nodiscard]] double NowMs() const;
    void EndPortion();

    bool m_active;
    bool m_fences;  ///< otherwise each portion is waited for
    CDrawPace m_pace;
    bool m_ended = false;
    double m_beginMs;
    std::uint32_t m_triangles = 0;  ///< of the portion that grows
    float m_pixels = 0;
    double m_allTriangles = 0;
    void* m_previous = nullptr;  ///< GLsync of the portion before
};
