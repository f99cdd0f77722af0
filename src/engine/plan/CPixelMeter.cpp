// SPDX-License-Identifier: MIT
#include "engine/plan/CPixelMeter.h"

#include <cmath>
#include <cstddef>

namespace {

using CPoint = std::array<double, 4>;

/** A convex polygon in clip space: a triangle that is cut at up to six planes. */
struct CPolygon {
    std::array<CPoint, 9> points{};
    std::size_t count = 0;

    void Add(const CPoint& point) { points[count++] = point; }
};

/** Six planes: a point is inside of one where this is at least 0. */
double Inside(const CPoint& p, unsigned plane) {
    return plane % 2 == 0 ? p[3] + p[plane / 2] : p[3] - p[plane / 2];
}

CPoint Between(const CPoint& a, const CPoint& b, double share) {
    CPoint result{};
    for (std::size_t i = 0; i < 4; ++i) result[i] = a[i] + share * (b[i] - a[i]);
    return result;
}

CPolygon CutAt(const CPolygon& from, unsigned plane) {
    CPolygon result;
    for (std::size_t i = 0; i < from.count; ++i) {
        const CPoint &a = from.points[i], &b = from.points[(i + 1) % from.count];
        const double insideA = Inside(a, plane), insideB = Inside(b, plane);
        if (insideA >= 0) result.Add(a);
        if ((insideA >= 0) != (insideB >= 0)) result.Add(Between(a, b, insideA / (insideA - insideB)));
        if (result.count == result.points.size()) break;  // only where numbers are not finite
    }
    return result;
}

CPolygon Visible(const CSampleTriangle& triangle, const CMatrix4d& clip) {
    CPolygon polygon;
    for (const CVec3& corner : triangle.corners)
        polygon.Add(clip.Transform({static_cast<double>(corner.x), static_cast<double>(corner.y),
                                    static_cast<double>(corner.z), 1}));
    for (unsigned plane = 0; plane < 6 && polygon.count > 0; ++plane) polygon = CutAt(polygon, plane);
    return polygon;
}

}  // namespace

CScreenShare CPixelMeter::Of(const CSampleTriangle& triangle, const CMatrix4d& clip, EFaces faces) const {
    const CPolygon polygon = Visible(triangle, clip);
    double twice = 0, outline = 0;
    for (std::size_t i = 0; i < polygon.count; ++i) {
        const CPoint &a = polygon.points[i], &b = polygon.points[(i + 1) % polygon.count];
        if (a[3] <= 0 || b[3] <= 0) return {};
        const double ax = a[0] / a[3] * m_width / 2, ay = a[1] / a[3] * m_height / 2;
        const double bx = b[0] / b[3] * m_width / 2, by = b[1] / b[3] * m_height / 2;
        twice += ax * by - bx * ay;
        outline += std::hypot(bx - ax, by - ay);
    }
    const bool hidden =
        faces == EFaces::CounterClockwise ? twice < 0 : faces == EFaces::Clockwise && twice > 0;
    if (hidden || !std::isfinite(twice) || !std::isfinite(outline)) return {};
    const auto weight = static_cast<double>(triangle.weight);
    return {std::abs(twice) / 2 * weight, outline * weight};
}
