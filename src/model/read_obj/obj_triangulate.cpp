// SPDX-License-Identifier: MIT
#include "model/read_obj/obj_triangulate.h"

#include <cmath>
#include <numeric>

namespace {

struct CPoint {
    double x, y;
};

double Turn(CPoint a, CPoint b, CPoint c) {
    return (b.x - a.x) * (c.y - b.y) - (b.y - a.y) * (c.x - b.x);
}

/** Twice the area vector (Newell): its length and direction serve any planar or nearly planar polygon. */
std::array<double, 3> AreaVector(std::span<const CVec3> corners) {
    std::array<double, 3> n{};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const CVec3 a = corners[i], b = corners[(i + 1) % corners.size()];
        n[0] += (double{a.y} - double{b.y}) * (double{a.z} + double{b.z});
        n[1] += (double{a.z} - double{b.z}) * (double{a.x} + double{b.x});
        n[2] += (double{a.x} - double{b.x}) * (double{a.y} + double{b.y});
    }
    return n;
}

/** The polygon seen along its area vector, counter-clockwise. */
std::vector<CPoint> Flattened(std::span<const CVec3> corners) {
    const std::array<double, 3> n = AreaVector(corners);
    const double ax = std::abs(n[0]), ay = std::abs(n[1]), az = std::abs(n[2]);
    const int axis = ax >= ay && ax >= az ? 0 : ay >= az ? 1 : 2;
    const double sign = n[static_cast<std::size_t>(axis)] < 0 ? -1 : 1;
    std::vector<CPoint> points;
    points.reserve(corners.size());
    for (const CVec3 c : corners) {
        switch (axis) {
            case 0:
                points.push_back({sign * double{c.y}, double{c.z}});
                break;
            case 1:
                points.push_back({sign * double{c.z}, double{c.x}});
                break;
            default:
                points.push_back({sign * double{c.x}, double{c.y}});
                break;
        }
    }
    return points;
}

void AddFan(std::span<const std::uint32_t> ring, std::vector<CTriangle>& triangles) {
    for (std::size_t i = 2; i < ring.size(); ++i) triangles.push_back({ring[0], ring[i - 1], ring[i]});
}

void CutQuadrangle(std::span<const CVec3> c, std::vector<CTriangle>& triangles) {
    const auto bend = [&c](std::size_t a, std::size_t b, std::size_t d, std::size_t e) {
        return Dot(Cross(c[b] - c[a], c[d] - c[b]), Cross(c[d] - c[a], c[e] - c[d]));
    };
    // Positive where both halves face the same way: the diagonal lies inside.
    const bool inside02 = bend(0, 1, 2, 3) > 0, inside13 = bend(1, 2, 3, 0) > 0;
    const CVec3 d02 = c[2] - c[0], d13 = c[3] - c[1];
    const bool cut02 = inside02 != inside13 ? inside02 : Dot(d02, d02) <= Dot(d13, d13);
    if (cut02) {
        triangles.insert(triangles.end(), {{0, 1, 2}, {0, 2, 3}});
    } else {
        triangles.insert(triangles.end(), {{0, 1, 3}, {1, 2, 3}});
    }
}

/** No corner turns right, and the outline goes round once: x changes its direction twice only. */
bool IsConvex(const std::vector<CPoint>& points) {
    const std::size_t n = points.size();
    int directionChanges = 0;
    double lastStep = 0, firstStep = 0;
    for (std::size_t i = 0; i < n; ++i) {
        if (Turn(points[i], points[(i + 1) % n], points[(i + 2) % n]) < 0) return false;
        const double step = points[(i + 1) % n].x - points[i].x;
        if (step == 0) continue;
        if (firstStep == 0) firstStep = step;
        directionChanges += lastStep * step < 0;
        lastStep = step;
    }
    return directionChanges + (firstStep * lastStep < 0) <= 2;
}

bool IsInside(CPoint a, CPoint b, CPoint c, CPoint p) {
    return Turn(a, b, p) >= 0 && Turn(b, c, p) >= 0 && Turn(c, a, p) >= 0;
}

class CEarCutter {
  public:
    CEarCutter(std::vector<CPoint> points, std::size_t& budget)
        : m_points(std::move(points)), m_budget(budget) {
        m_ring.resize(m_points.size());
        std::iota(m_ring.begin(), m_ring.end(), 0u);
    }

    void Cut(std::vector<CTriangle>& triangles) {
        std::size_t at = 0, tried = 0;
        while (m_ring.size() > 3 && tried < m_ring.size() && m_budget > m_ring.size()) {
            at %= m_ring.size();
            m_budget -= m_ring.size();
            if (!IsEar(at)) {
                ++at;
                ++tried;
                continue;
            }
            triangles.push_back({Ring(at), Ring(at + 1), Ring(at + 2)});
            m_ring.erase(m_ring.begin() + static_cast<std::ptrdiff_t>((at + 1) % m_ring.size()));
            tried = 0;
        }
        AddFan(m_ring, triangles);
    }

  private:
    [[nodiscard]] std::uint32_t Ring(std::size_t i) const { return m_ring[i % m_ring.size()]; }
    [[nodiscard]] CPoint Point(std::size_t i) const { return m_points[Ring(i)]; }

    [[nodiscard]] bool IsEar(std::size_t at) const {
        const CPoint a = Point(at), b = Point(at + 1), c = Point(at + 2);
        const double turn = Turn(a, b, c);
        if (turn <= 0) return turn == 0;  // a corner on a straight edge has no area to lose
        for (std::size_t i = 3; i < m_ring.size(); ++i) {
            const CPoint p = Point(at + i);
            // A corner that lies on one of the three, as where an outline touches itself, is not in the way.
            const bool same =
                (p.x == a.x && p.y == a.y) || (p.x == b.x && p.y == b.y) || (p.x == c.x && p.y == c.y);
            if (!same && IsInside(a, b, c, p)) return false;
        }
        return true;
    }

    std::vector<CPoint> m_points;
    std::vector<std::uint32_t> m_ring;
    std::size_t& m_budget;
};

}  // namespace

void TriangulatePolygon(std::span<const CVec3> corners, std::size_t& budget,
                        std::vector<CTriangle>& triangles) {
    if (corners.size() == 3) return triangles.push_back({0, 1, 2});
    if (corners.size() == 4) return CutQuadrangle(corners, triangles);
    std::vector<CPoint> points = Flattened(corners);
    if (!IsConvex(points)) return CEarCutter(std::move(points), budget).Cut(triangles);
    std::vector<std::uint32_t> ring(corners.size());
    std::iota(ring.begin(), ring.end(), 0u);
    AddFan(ring, triangles);
}
