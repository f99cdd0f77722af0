// SPDX-License-Identifier: MIT
#include "export/gltf/parts/CGltfTransform.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "export/gltf/glb/CJsonText.h"

namespace {

using CColumns = std::array<CVec3d, 3>;

CVec3 InFloat(CVec3d v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

double& Part(CVec3d& v, std::size_t i) {
    return i == 0 ? v.x : i == 1 ? v.y : v.z;
}

double Determinant(const CColumns& c) {
    return Dot(Cross(c[0], c[1]), c[2]);
}

CVec3d AnyAcross(CVec3d v) {
    const CVec3d axis = std::abs(v.x) < 0.6 ? CVec3d{1, 0, 0} : CVec3d{0, 1, 0};
    return Normalized(Cross(v, axis));
}

/** Unit vectors of the columns; those without a length are put across the others. */
CColumns UnitColumns(const CColumns& columns, const std::array<double, 3>& lengths) {
    CColumns unit;
    const double none = 1e-12 * std::max({lengths[0], lengths[1], lengths[2]});
    std::array<bool, 3> has{};
    for (std::size_t i = 0; i < 3; ++i) {
        has[i] = lengths[i] > none;
        if (has[i]) unit[i] = columns[i] * (1 / lengths[i]);
    }
    for (std::size_t i = 0; i < 3; ++i) {
        if (has[i]) continue;
        const std::size_t a = (i + 1) % 3, b = (i + 2) % 3;
        if (has[a] && has[b]) {
            unit[i] = Normalized(Cross(unit[a], unit[b]));
        } else if (has[a] || has[b]) {
            unit[i] = AnyAcross(has[a] ? unit[a] : unit[b]);
        } else {
            unit[i] = CVec3d{1, 0, 0};
        }
        has[i] = true;
    }
    return unit;
}

/** Turn and scale of perpendicular columns. */
CGltfTransform Perpendicular(const CColumns& columns) {
    std::array<double, 3> lengths{};
    for (std::size_t i = 0; i < 3; ++i) lengths[i] = Length(columns[i]);
    CColumns unit = UnitColumns(columns, lengths);
    if (Determinant(unit) < 0) {
        unit[0] = unit[0] * -1;
        lengths[0] = -lengths[0];
    }
    CGltfTransform result;
    result.rotation = TurnTo(unit[0], unit[1], unit[2]);
    result.scale = InFloat({lengths[0], lengths[1], lengths[2]});
    return result;
}

bool ArePerpendicular(const CColumns& columns) {
    // Floats that were multiplied a few times are no more precise.
    constexpr double kPrecision = 1e-5;
    for (std::size_t i = 0; i < 3; ++i) {
        const CVec3d &a = columns[i], &b = columns[(i + 1) % 3];
        if (std::abs(Dot(a, b)) > kPrecision * Length(a) * Length(b)) return false;
    }
    return true;
}

/** One-sided Jacobi: turns the columns about each other until they are perpendicular. They become matrix * turns. */
CColumns TurnedPerpendicular(CColumns& columns) {
    CColumns turns{CVec3d{1, 0, 0}, CVec3d{0, 1, 0}, CVec3d{0, 0, 1}};
    for (int sweep = 0; sweep < 30; ++sweep) {
        for (const auto& [p, q] : {std::pair<std::size_t, std::size_t>{0, 1}, {0, 2}, {1, 2}}) {
            const double pp = Dot(columns[p], columns[p]), qq = Dot(columns[q], columns[q]);
            const double pq = Dot(columns[p], columns[q]);
            if (std::abs(pq) <= 1e-15 * std::sqrt(pp * qq)) continue;
            const double zeta = (qq - pp) / (2 * pq);
            const double t = (zeta < 0 ? -1 : 1) / (std::abs(zeta) + std::hypot(1.0, zeta));
            const double c = 1 / std::hypot(1.0, t), s = c * t;
            for (CColumns* both : {&columns, &turns}) {
                const CVec3d old = (*both)[p];
                (*both)[p] = old * c - (*both)[q] * s;
                (*both)[q] = old * s + (*both)[q] * c;
            }
        }
    }
    return turns;
}

}  // namespace

std::array<float, 4> TurnTo(CVec3d x, CVec3d y, CVec3d z) {
    // K. Shoemake, "Quaternions": the largest of the four is found first, so that nothing is divided by almost 0.
    const double trace = x.x + y.y + z.z;
    std::array<double, 4> q{};
    if (trace > 0) {
        q = {y.z - z.y, z.x - x.z, x.y - y.x, 1 + trace};
    } else if (x.x >= y.y && x.x >= z.z) {
        q = {1 + x.x - y.y - z.z, x.y + y.x, z.x + x.z, y.z - z.y};
    } else if (y.y >= z.z) {
        q = {x.y + y.x, 1 + y.y - x.x - z.z, y.z + z.y, z.x - x.z};
    } else {
        q = {z.x + x.z, y.z + z.y, 1 + z.z - x.x - y.y, x.y - y.x};
    }
    const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    if (!(length > 0) || !std::isfinite(length)) return {0, 0, 0, 1};
    std::array<float, 4> result{};
    for (std::size_t i = 0; i < 4; ++i) result[i] = static_cast<float>(q[i] / length);
    return result;
}

std::vector<CGltfTransform> TransformsOf(const CMatrix4d& matrix) {
    CColumns columns;
    for (std::size_t i = 0; i < 3; ++i)
        columns[i] = {matrix.m[i * 4], matrix.m[i * 4 + 1], matrix.m[i * 4 + 2]};
    const CVec3 moved = InFloat({matrix.m[12], matrix.m[13], matrix.m[14]});
    std::vector<CGltfTransform> result;
    if (ArePerpendicular(columns)) {
        result.push_back(Perpendicular(columns));
    } else {
        // Large and small numbers leave the range of their squares.
        double largest = 0;
        for (CVec3d& column : columns) {
            for (std::size_t i = 0; i < 3; ++i) largest = std::max(largest, std::abs(Part(column, i)));
        }
        for (CVec3d& column : columns) column = column * (1 / largest);
        const CColumns turns = TurnedPerpendicular(columns);
        result.push_back(Perpendicular(columns));
        result[0].scale = InFloat(CVec3d{static_cast<double>(result[0].scale.x) * largest,
                                         static_cast<double>(result[0].scale.y) * largest,
                                         static_cast<double>(result[0].scale.z) * largest});
        CGltfTransform inner;
        const auto [x, y, z, w] = TurnTo(turns[0], turns[1], turns[2]);
        inner.rotation = {-x, -y, -z, w};
        result.push_back(inner);
    }
    result[0].translation = moved;
    return result;
}

bool CGltfTransform::IsFinite() const {
    return ::IsFinite(translation) && ::IsFinite(scale);
}

bool CGltfTransform::IsIdentity() const {
    return translation == CVec3{} && scale == CVec3{1, 1, 1} && std::abs(rotation[3]) == 1;
}

CMatrix4d CGltfTransform::Matrix() const {
    const std::array<double, 4> q{static_cast<double>(rotation[0]), static_cast<double>(rotation[1]),
                                  static_cast<double>(rotation[2]), static_cast<double>(rotation[3])};
    const auto [x, y, z, w] = q;
    const CColumns turned{CVec3d{1 - 2 * (y * y + z * z), 2 * (x * y + w * z), 2 * (x * z - w * y)} *
                              static_cast<double>(scale.x),
                          CVec3d{2 * (x * y - w * z), 1 - 2 * (x * x + z * z), 2 * (y * z + w * x)} *
                              static_cast<double>(scale.y),
                          CVec3d{2 * (x * z + w * y), 2 * (y * z - w * x), 1 - 2 * (x * x + y * y)} *
                              static_cast<double>(scale.z)};
    CMatrix4d matrix;
    for (std::size_t i = 0; i < 3; ++i) {
        matrix.m[i * 4] = turned[i].x;
        matrix.m[i * 4 + 1] = turned[i].y;
        matrix.m[i * 4 + 2] = turned[i].z;
    }
    matrix.m[12] = static_cast<double>(translation.x);
    matrix.m[13] = static_cast<double>(translation.y);
    matrix.m[14] = static_cast<double>(translation.z);
    return matrix;
}

void CGltfTransform::Write(CJsonText& json) const {
    const auto vector = [&](const char* key, CVec3 v) {
        json.Key(key).BeginArray().Value(v.x).Value(v.y).Value(v.z).EndArray();
    };
    if (!(translation == CVec3{})) vector("translation", translation);
    if (std::abs(rotation[3]) < 1) json.Member("rotation", std::span<const float>(rotation));
    if (!(scale == CVec3{1, 1, 1})) vector("scale", scale);
}
