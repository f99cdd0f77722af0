// SPDX-License-Identifier: MIT
#include "camera/CSavedView.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

using CMatrix = std::array<double, 16>;

constexpr std::size_t At(std::size_t row, std::size_t column) {
    return column * 4 + row;
}

CMatrix Product(const CMatrix& a, const CMatrix& b) {
    CMatrix c{};
    for (std::size_t column = 0; column < 4; ++column)
        for (std::size_t row = 0; row < 4; ++row)
            for (std::size_t k = 0; k < 4; ++k) c[At(row, column)] += a[At(row, k)] * b[At(k, column)];
    return c;
}

/** Brings the largest number of a column to its diagonal; false when there is none to divide by. */
bool PivotRow(CMatrix& m, CMatrix& inverse, std::size_t column) {
    std::size_t best = column;
    for (std::size_t row = column + 1; row < 4; ++row)
        if (std::abs(m[At(row, column)]) > std::abs(m[At(best, column)])) best = row;
    for (std::size_t k = 0; k < 4; ++k) {
        std::swap(m[At(best, k)], m[At(column, k)]);
        std::swap(inverse[At(best, k)], inverse[At(column, k)]);
    }
    const double pivot = m[At(column, column)];
    return pivot != 0 && std::isfinite(pivot);
}

std::optional<CMatrix> Inverse(CMatrix m) {
    CMatrix inverse = CViewMatrices{}.modelView;
    for (std::size_t column = 0; column < 4; ++column) {
        if (!PivotRow(m, inverse, column)) return std::nullopt;
        const double scale = 1.0 / m[At(column, column)];
        for (std::size_t k = 0; k < 4; ++k) {
            m[At(column, k)] *= scale;
            inverse[At(column, k)] *= scale;
        }
        for (std::size_t row = 0; row < 4; ++row) {
            const double factor = m[At(row, column)];
            if (row == column || factor == 0) continue;
            for (std::size_t k = 0; k < 4; ++k) {
                m[At(row, k)] -= factor * m[At(column, k)];
                inverse[At(row, k)] -= factor * inverse[At(column, k)];
            }
        }
    }
    const bool finite =
        std::all_of(inverse.begin(), inverse.end(), [](double d) { return std::isfinite(d); });
    return finite ? std::optional(inverse) : std::nullopt;
}

}  // namespace

CSavedView::CSavedView(const CViewMatrices& matrices)
    : m_viewport(matrices.viewport), m_inverse(Inverse(Product(matrices.projection, matrices.modelView))) {}

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
    const CMatrix& m = *m_inverse;
    const auto row = [&](std::size_t r) {
        return m[At(r, 0)] * x + m[At(r, 1)] * y + m[At(r, 2)] * z + m[At(r, 3)] * w;
    };
    const double divisor = row(3);
    const CVec3d point{row(0) / divisor, row(1) / divisor, row(2) / divisor};
    return divisor != 0 && IsFinite(point) ? std::optional(point) : std::nullopt;
}
