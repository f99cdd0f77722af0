// SPDX-License-Identifier: MIT
#include "scene_builder/CShape.h"

#include <numbers>

std::uint32_t CShape::AddPoint(CVec3 point) {
    points.push_back(point);
    return static_cast<std::uint32_t>(points.size() - 1);
}

std::uint32_t CShape::AddPoint(CVec3 point, CVec2 texCoord) {
    texCoords.push_back(texCoord);
    return AddPoint(point);
}

void CShape::AddTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t smoothing) {
    triangles.push_back({{a, b, c}, smoothing, 0});
}

void CShape::AddQuad(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d,
                     std::uint32_t smoothing) {
    AddTriangle(a, b, c, smoothing);
    AddTriangle(a, c, d, smoothing);
}

CShape& CShape::Material(const std::string& name) {
    materials = {name};
    for (CShapeTriangle& triangle : triangles) triangle.material = 0;
    return *this;
}

CShape& CShape::Move(CVec3 by) {
    for (CVec3& point : points) point = point + by;
    return *this;
}

CShape& CShape::Scale(CVec3 by) {
    for (CVec3& point : points) point = {point.x * by.x, point.y * by.y, point.z * by.z};
    if (by.x * by.y * by.z < 0) {
        for (CShapeTriangle& triangle : triangles) std::swap(triangle.corner[1], triangle.corner[2]);
    }
    return *this;
}

CShape& CShape::Turn(float angleDeg, CVec3 axis) {
    const CVec3 k = Normalized(axis);
    const float angle = angleDeg * std::numbers::pi_v<float> / 180.0f;
    const float c = std::cos(angle), s = std::sin(angle);
    for (CVec3& p : points) p = p * c + Cross(k, p) * s + k * (Dot(k, p) * (1 - c));
    return *this;
}

CShape& CShape::MapFlat(CVec2 lower, CVec2 upper) {
    texCoords.clear();
    for (const CVec3& p : points) {
        texCoords.push_back({(p.x - lower.x) / (upper.x - lower.x), (p.y - lower.y) / (upper.y - lower.y)});
    }
    return *this;
}

CShape& CShape::Add(const CShape& other) {
    const auto firstPoint = static_cast<std::uint32_t>(points.size());
    const auto firstMaterial = static_cast<std::uint16_t>(materials.size());
    // One part with texture coordinates gives them to the whole.
    if (!texCoords.empty() || !other.texCoords.empty()) texCoords.resize(points.size());
    points.insert(points.end(), other.points.begin(), other.points.end());
    texCoords.insert(texCoords.end(), other.texCoords.begin(), other.texCoords.end());
    if (!texCoords.empty()) texCoords.resize(points.size());
    materials.insert(materials.end(), other.materials.begin(), other.materials.end());
    for (CShapeTriangle triangle : other.triangles) {
        for (std::uint32_t& corner : triangle.corner) corner += firstPoint;
        triangle.material = static_cast<std::uint16_t>(triangle.material + firstMaterial);
        triangles.push_back(triangle);
    }
    return *this;
}
