// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>

#include "base/math/CMatrix.h"

/** The matrices and the viewport that a picture was drawn with. */
struct CViewMatrices {
    CMatrix4d modelView;
    CMatrix4d projection;
    std::array<int, 4> viewport{0, 0, 1, 1};  ///< x, y, width, height
};

/** Turns window points of a drawn picture back into the coordinates that its model-view matrix was given.
 * Never divides by zero. */
class CSavedView {
  public:
    CSavedView() = default;
    explicit CSavedView(const CViewMatrices& matrices);

    /** Window coordinates with y upwards, depth 0 near to 1 far. Nothing where the matrices cannot
     * be inverted. */
    [[nodiscard]] std::optional<CVec3d> Unproject(double x, double y, double depth) const;
    /** The point where all rays begin; nothing for a parallel projection. */
    [[nodiscard]] std::optional<CVec3d> Eye() const;

  private:
    [[nodiscard]] std::optional<CVec3d> FromClip(double x, double y, double z, double w) const;

    std::array<int, 4> m_viewport{0, 0, 1, 1};
    std::optional<CMatrix4d> m_inverse;
};
