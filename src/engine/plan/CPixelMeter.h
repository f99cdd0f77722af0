// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CMatrix.h"
#include "engine/plan/CMeshSample.h"

/** How much of the screen something takes, hidden parts too. */
struct CScreenShare {
    double area = 0;     ///< in pixels
    double outline = 0;  ///< in pixels of length
};

/** Measures triangles in one view of width by height pixels, as far as they lie in the view. */
class CPixelMeter {
  public:
    enum class EFaces { Both, CounterClockwise, Clockwise };

    CPixelMeter(int width, int height) : m_width(width), m_height(height) {}
    /** clip: the triangle's coordinates to clip space. faces: which of them are drawn, as they are seen. */
    [[nodiscard]] CScreenShare Of(const CSampleTriangle& triangle, const CMatrix4d& clip, EFaces faces) const;

  private:
    double m_width, m_height;
};
