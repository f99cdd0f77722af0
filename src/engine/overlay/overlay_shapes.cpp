// SPDX-License-Identifier: MIT
#include "engine/overlay/overlay_shapes.h"

#include <cmath>
#include <numbers>

#include "model/prepare/CPreparedScene.h"

namespace overlay_shapes {
namespace {

constexpr float kDegree = std::numbers::pi_v<float> / 180.0f;
constexpr int kCircleSegments = 48;

void Add(CLines& lines, CVec3 a, CVec3 b) {
    lines.push_back(a);
    lines.push_back(b);
}

void AddCircle(CLines& lines, CVec3 middle, CVec3 right, CVec3 up, float radius) {
    const auto at = [&](int i) {
        const float angle = 360.0f * kDegree * static_cast<float>(i) / kCircleSegments;
        return middle + right * (std::cos(angle) * radius) + up * (std::sin(angle) * radius);
    };
    for (int i = 0; i < kCircleSegments; ++i) Add(lines, at(i), at(i + 1));
}

/** A box given by its middle and three half axes. */
void AddSolid(CLines& lines, CVec3 middle, CVec3 a, CVec3 b, CVec3 c) {
    const auto corner = [&](unsigned i) {
        return middle + a * ((i & 1u) ? 1.0f : -1.0f) + b * ((i & 2u) ? 1.0f : -1.0f) +
               c * ((i & 4u) ? 1.0f : -1.0f);
    };
    for (unsigned i = 0; i < 8; ++i) {
        for (const unsigned bit : {1u, 2u, 4u}) {
            if ((i & bit) == 0) Add(lines, corner(i), corner(i | bit));
        }
    }
}

}  // namespace

CVec3 AnySquareTo(CVec3 direction) {
    const CVec3 other = std::abs(direction.z) < 0.9f * Length(direction) ? CVec3{0, 0, 1} : CVec3{0, 1, 0};
    const CVec3 square = Normalized(Cross(direction, other));
    return Length(square) > 0.5f ? square : CVec3{1, 0, 0};
}

CLines BoxEdges(const CBox& box) {
    CLines lines;
    if (box.IsEmpty()) return lines;
    const CVec3 half = (box.max - box.min) * 0.5f;
    AddSolid(lines, box.Center(), {half.x, 0, 0}, {0, half.y, 0}, {0, 0, half.z});
    return lines;
}

CLines Camera(const CPreparedCamera& camera, float size) {
    CLines lines;
    const CVec3 sight = camera.target - camera.position;
    const CVec3 forward = Length(sight) > 0 ? Normalized(sight) : CVec3{0, 1, 0};
    const CVec3 right = AnySquareTo(forward);
    const CVec3 up = Cross(right, forward);
    const CVec3 eye = camera.position;
    AddSolid(lines, eye - forward * (0.9f * size), right * (0.3f * size), up * (0.45f * size),
             forward * (0.6f * size));
    AddSolid(lines, eye - forward * (0.15f * size), right * (0.15f * size), up * (0.15f * size),
             forward * (0.15f * size));

    const float distance = Length(sight);
    const float halfWidth = std::tan(std::fmin(camera.fovDeg, 170.0f) * kDegree / 2) * distance;
    const CVec3 x = right * halfWidth, y = up * (halfWidth * 0.75f);
    const CVec3 corners[] = {camera.target + x + y, camera.target - x + y, camera.target - x - y,
                             camera.target + x - y};
    for (int i = 0; i < 4; ++i) {
        Add(lines, eye, corners[i]);
        Add(lines, corners[i], corners[(i + 1) % 4]);
    }
    Add(lines, eye, camera.target);
    return lines;
}

CLines Omni(const CPreparedLight& light, float size) {
    CLines lines;
    const CVec3 axes[] = {{size, 0, 0}, {0, size, 0}, {0, 0, size}};
    for (int i = 0; i < 3; ++i) {
        const CVec3 a = axes[i], b = axes[(i + 1) % 3];
        Add(lines, light.position - a, light.position + a);
        const CVec3 p = a * 0.5f, q = b * 0.5f;
        Add(lines, light.position + p, light.position + q);
        Add(lines, light.position + q, light.position - p);
        Add(lines, light.position - p, light.position - q);
        Add(lines, light.position - q, light.position + p);
    }
    return lines;
}

CLines Spot(const CPreparedLight& light, float size) {
    CLines lines = Omni(light, size * 0.5f);
    const CVec3 sight = light.target - light.position;
    const float distance = Length(sight);
    if (!(distance > 0) || !std::isfinite(distance)) return lines;
    const CVec3 right = AnySquareTo(sight);
    const CVec3 up = Normalized(Cross(right, sight));
    const auto radiusOf = [distance](float angleDeg) {
        return distance * std::tan(std::fmin(std::fmax(angleDeg, 0.0f), 160.0f) * kDegree / 2);
    };
    const float outer = radiusOf(light.falloffDeg);
    AddCircle(lines, light.target, right, up, radiusOf(light.hotspotDeg));
    AddCircle(lines, light.target, right, up, outer);
    for (const CVec3 side : {right, -right, up, -up}) Add(lines, light.position, light.target + side * outer);
    Add(lines, light.position, light.target);
    return lines;
}

CLines Letter(char letter, CVec3 middle, CVec3 right, CVec3 up, float size) {
    CLines lines;
    const CVec3 x = right * (size * 0.35f), y = up * (size * 0.5f);
    if (letter == 'X') {
        Add(lines, middle - x - y, middle + x + y);
        Add(lines, middle - x + y, middle + x - y);
    } else if (letter == 'Y') {
        Add(lines, middle - x + y, middle);
        Add(lines, middle + x + y, middle);
        Add(lines, middle, middle - y);
    } else if (letter == 'Z') {
        Add(lines, middle - x + y, middle + x + y);
        Add(lines, middle + x + y, middle - x - y);
        Add(lines, middle - x - y, middle + x - y);
    }
    return lines;
}

}  // namespace overlay_shapes
