// SPDX-License-Identifier: MIT
#include "camera/CSavedView.h"

CSavedView::CSavedView(const CViewMatrices& matrices) : m_viewport(matrices.viewport) {
    bool invertible = false;
    const CMatrix4d inverse = (matrices.projection * matrices.modelView).Inverse(&invertible);
    if (invertible) m_inverse = inverse;
}

std::optional<CVec3d> CSavedView::Unproject(double x, double y, double depth) const {
    if (m_viewport[2] <= 0 || m_viewport[3] <= 0) return std::nullopt;
    return FromClip(2 * (x - m_viewport[0]) / m_viewport[2] - 1, 2 * (y - m_viewport[1]) / m_viewport[3] - 1,
                    2 * depth - 1, 1);
}

// The eye is where a perspective projection divides by zero: the one point whose x, y and w all vanish.
std::optional<CVec3d> CSavedView::Eye() const {
    return FromClip(0, 0, 1, 0);
}

std::optional<CVec3d> CSavedView::FromClip(double x, double y, double z, double w) const {
    if (!m_inverse) return std::nullopt;
    const std::array<double, 4> p = m_inverse->Transform({x, y, z, w});
    const double divisor = p[3];
    const CVec3d point{p[0] / divisor, p[1] / divisor, p[2] / divisor};
    return divisor != 0 && IsFinite(point) ? std::optional(point) : std::nullopt;
}
