// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "base/math/CBox.h"

struct CFrameView;
struct CPreparedNode;

/** How large a node is on the screen. */
struct CNodeOnScreen {
    float pixelsPerUnit = 0;  ///< of its mesh's units, where it is nearest to the viewer
    float pixels = 0;         ///< of the rectangle round its bounds, as far as that lies in the view
};

/** Measures nodes of one view. */
class CScreenScale {
  public:
    /** width, height: of the viewport, in pixels. */
    CScreenScale(const CFrameView& view, int width, int height);
    [[nodiscard]] CNodeOnScreen Of(const CPreparedNode& node) const;

  private:
    CMatrix4d m_clip;  ///< the scene's coordinates to clip space
    double m_width, m_height;
    double m_pixelsPerUnit;  ///< of the scene's units at a distance of 1
};
