// SPDX-License-Identifier: MIT
#include <numbers>

#include "scene_builder/shapes.h"

namespace shapes {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;
constexpr std::uint32_t kSideGroup = 1, kTopGroup = 2, kBottomGroup = 4, kBoreGroup = 8;

CVec3 DirectionAt(std::span<const CVec3> path, std::size_t i, bool closed) {
    const std::size_t n = path.size();
    const std::size_t before = i > 0 ? i - 1 : (closed ? n - 1 : 0);
    const std::size_t after = i + 1 < n ? i + 1 : (closed ? 0 : n - 1);
    return Normalized(path[after] - path[before]);
}

CVec3 AnyAcross(CVec3 direction) {
    return Normalized(Cross(direction, std::fabs(direction.z) < 0.9f ? CVec3{0, 0, 1} : CVec3{1, 0, 0}));
}

/** A direction across the path at each point, carried along it, which keeps a tube from twisting. */
std::vector<CVec3> Frames(std::span<const CVec3> path, bool closed) {
    std::vector<CVec3> frames{AnyAcross(DirectionAt(path, 0, closed))};
    const auto carry = [&](std::size_t to) {
        const CVec3 direction = DirectionAt(path, to, closed), before = frames.back();
        return Normalized(before - direction * Dot(before, direction));
    };
    for (std::size_t i = 1; i < path.size(); ++i) frames.push_back(carry(i));
    if (!closed) return frames;
    // Carried once round, it comes back turned; each point takes its share of the way back.
    const CVec3 end = carry(0), start = frames[0], along = DirectionAt(path, 0, closed);
    const float turned = std::atan2(Dot(Cross(start, end), along), Dot(start, end));
    for (std::size_t i = 1; i < path.size(); ++i) {
        const float back = -turned * static_cast<float>(i) / static_cast<float>(path.size());
        const CVec3 up = Cross(DirectionAt(path, i, closed), frames[i]);
        frames[i] = frames[i] * std::cos(back) + up * std::sin(back);
    }
    return frames;
}

void AddCap(CShape& shape, std::span<const CVec3> path, bool atEnd, int sides) {
    const std::uint32_t count = static_cast<std::uint32_t>(sides);
    const std::uint32_t first = atEnd ? static_cast<std::uint32_t>(path.size() - 1) * count : 0;
    const std::uint32_t middle = shape.AddPoint(atEnd ? path.back() : path.front());
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t a = first + i, b = first + (i + 1) % count;
        if (atEnd) {
            shape.AddTriangle(middle, a, b, kTopGroup);
        } else {
            shape.AddTriangle(middle, b, a, kBottomGroup);
        }
    }
}

/** A flat body between two rings of the same number of points, from z = 0 to thickness. */
CShape RingBody(std::span<const CVec2> outer, std::span<const CVec2> inner, float thickness,
                std::uint32_t outerGroup) {
    CShape shape;
    const auto n = static_cast<std::uint32_t>(outer.size());
    for (const float z : {0.0f, thickness}) {
        for (const CVec2 p : outer) shape.AddPoint({p.x, p.y, z});
        for (const CVec2 p : inner) shape.AddPoint({p.x, p.y, z});
    }
    for (std::uint32_t i = 0; i < n; ++i) {
        const std::uint32_t j = (i + 1) % n;
        shape.AddQuad(i, j, 2 * n + j, 2 * n + i, outerGroup);                 // outside
        shape.AddQuad(n + j, n + i, 3 * n + i, 3 * n + j, kBoreGroup);         // bore
        shape.AddQuad(2 * n + i, 2 * n + j, 3 * n + j, 3 * n + i, kTopGroup);  // top
        shape.AddQuad(j, i, n + i, n + j, kBottomGroup);                       // bottom
    }
    return shape;
}

std::vector<CVec2> Circle(float radius, std::size_t count) {
    std::vector<CVec2> circle;
    for (std::size_t i = 0; i < count; ++i) {
        const float angle = 2 * kPi * static_cast<float>(i) / static_cast<float>(count);
        circle.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    return circle;
}

/** Trapezoid teeth, eight points each, spaced evenly like the circle that closes the ring inside. */
std::vector<CVec2> ToothOutline(const CGear& gear) {
    // Where, between root (0) and tip (1), the eight points of one tooth stand; the first points along +x.
    constexpr float kHeight[] = {1, 1, 0.5f, 0, 0, 0, 0.5f, 1};
    const std::size_t count = static_cast<std::size_t>(gear.teeth) * std::size(kHeight);
    std::vector<CVec2> outline = Circle(1, count);
    for (std::size_t i = 0; i < count; ++i) {
        const float radius = gear.radius + gear.toothDepth * (kHeight[i % std::size(kHeight)] - 0.5f);
        outline[i] = {outline[i].x * radius, outline[i].y * radius};
    }
    return outline;
}

}  // namespace

CShape Tube(std::span<const CVec3> path, float radius, int sides, bool closed) {
    const std::vector<CVec3> across = Frames(path, closed);
    CShape shape;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const CVec3 up = Cross(DirectionAt(path, i, closed), across[i]);
        for (int k = 0; k < sides; ++k) {
            const float angle = 2 * kPi * static_cast<float>(k) / static_cast<float>(sides);
            shape.AddPoint(path[i] + across[i] * (radius * std::cos(angle)) +
                           up * (radius * std::sin(angle)));
        }
    }
    const auto count = static_cast<std::uint32_t>(sides), rows = static_cast<std::uint32_t>(path.size());
    for (std::uint32_t row = 0; row + (closed ? 0 : 1) < rows; ++row) {
        const std::uint32_t low = row * count, high = (row + 1) % rows * count;
        for (std::uint32_t k = 0; k < count; ++k) {
            const std::uint32_t next = (k + 1) % count;
            shape.AddQuad(low + k, low + next, high + next, high + k, kSideGroup);
        }
    }
    if (!closed) {
        AddCap(shape, path, false, sides);
        AddCap(shape, path, true, sides);
    }
    return shape;
}

CShape Gear(const CGear& gear) {
    const std::vector<CVec2> teeth = ToothOutline(gear);
    const float rimInside = gear.radius - gear.toothDepth / 2 - gear.rim;
    CShape shape = RingBody(teeth, Circle(rimInside, teeth.size()), gear.thickness, 0);
    CShape hub = RingBody(Circle(gear.hubRadius, 32), Circle(gear.hubRadius * 0.45f, 32),
                          gear.thickness * 1.3f, kSideGroup);
    shape.Add(hub.Move({0, 0, gear.thickness * -0.15f}));
    const float length = rimInside - gear.hubRadius + gear.rim * 0.4f;
    for (int i = 0; i < gear.spokes && length > 0; ++i) {
        CShape spoke = Box({length, gear.hubRadius * 0.5f, gear.thickness * 0.7f});
        spoke.texCoords.clear();
        spoke.Move({gear.hubRadius * 0.9f + length / 2, 0, gear.thickness / 2});
        shape.Add(spoke.Turn(360.0f * static_cast<float>(i) / static_cast<float>(gear.spokes), {0, 0, 1}));
    }
    return shape;
}

}  // namespace shapes
