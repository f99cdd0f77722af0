// SPDX-License-Identifier: MIT
#include "scene_builder/shapes.h"

#include <numbers>

namespace shapes {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;

/** Smoothing group of each profile segment: a new bit after every crease. */
std::vector<std::uint32_t> ProfileGroups(std::span<const CVec2> profile, float creaseDeg) {
    std::vector<std::uint32_t> groups;
    unsigned bit = 0;
    for (std::size_t i = 0; i + 1 < profile.size(); ++i) {
        if (i > 0) {
            const CVec2 a{profile[i].x - profile[i - 1].x, profile[i].y - profile[i - 1].y};
            const CVec2 b{profile[i + 1].x - profile[i].x, profile[i + 1].y - profile[i].y};
            const float turn = std::atan2(a.x * b.y - a.y * b.x, a.x * b.x + a.y * b.y);
            if (std::fabs(turn) * 180 / kPi > creaseDeg) ++bit;
        }
        groups.push_back(1u << (bit % 31));
    }
    return groups;
}

std::vector<float> LengthsAlong(std::span<const CVec2> profile) {
    std::vector<float> lengths{0};
    for (std::size_t i = 1; i < profile.size(); ++i) {
        lengths.push_back(lengths.back() +
                          std::hypot(profile[i].x - profile[i - 1].x, profile[i].y - profile[i - 1].y));
    }
    return lengths;
}

/** Joins two rows of points with quads; a row whose radius is 0 is one point, and gets triangles. */
void JoinRows(CShape& shape, std::uint32_t low, std::uint32_t high, int columns, int stride,
              std::uint32_t group, bool lowIsPoint, bool highIsPoint) {
    for (int i = 0; i < columns; ++i) {
        const auto a = static_cast<std::uint32_t>(i), b = static_cast<std::uint32_t>((i + 1) % stride);
        if (!lowIsPoint) shape.AddTriangle(low + a, low + b, high + b, group);
        if (!highIsPoint) shape.AddTriangle(low + a, high + b, high + a, group);
    }
}

}  // namespace

CShape Lathe(std::span<const CVec2> profile, const CLatheOptions& options) {
    CShape shape;
    const int stride = options.segments + (options.textured ? 1 : 0);
    const std::vector<float> lengths = LengthsAlong(profile);
    for (std::size_t row = 0; row < profile.size(); ++row) {
        for (int i = 0; i < stride; ++i) {
            const float u = static_cast<float>(i) / static_cast<float>(options.segments);
            const CVec3 point{profile[row].x * std::cos(u * 2 * kPi), profile[row].x * std::sin(u * 2 * kPi),
                              profile[row].y};
            if (options.textured) {
                shape.AddPoint(point, {u, lengths[row] / lengths.back()});
            } else {
                shape.AddPoint(point);
            }
        }
    }
    const std::vector<std::uint32_t> groups = ProfileGroups(profile, options.creaseDeg);
    for (std::size_t row = 0; row + 1 < profile.size(); ++row) {
        const auto low = static_cast<std::uint32_t>(row) * static_cast<std::uint32_t>(stride);
        JoinRows(shape, low, low + static_cast<std::uint32_t>(stride), options.segments, stride, groups[row],
                 profile[row].x == 0, profile[row + 1].x == 0);
    }
    return shape;
}

CShape Sphere(float radius, int segments, bool textured) {
    std::vector<CVec2> profile;
    const int rows = segments / 2;
    for (int i = 0; i <= rows; ++i) {
        const float angle = kPi * (static_cast<float>(i) / static_cast<float>(rows) - 0.5f);
        const bool pole = i == 0 || i == rows;
        profile.push_back({pole ? 0 : radius * std::cos(angle), radius * std::sin(angle)});
    }
    return Lathe(profile, {.segments = segments, .textured = textured, .creaseDeg = 180});
}

CShape Cylinder(float radius, float height, float bevel, int segments) {
    std::vector<CVec2> profile{{0, 0}};
    constexpr int kSteps = 4;
    for (int end = 0; end < 2; ++end) {
        for (int i = 0; i <= kSteps; ++i) {
            const float angle = kPi / 2 * (static_cast<float>(i) / kSteps - (end == 0 ? 1.0f : 0.0f));
            const float middle = end == 0 ? bevel : height - bevel;
            profile.push_back({radius - bevel + bevel * std::cos(angle), middle + bevel * std::sin(angle)});
            if (bevel == 0) break;
        }
    }
    profile.push_back({0, height});
    return Lathe(profile, {.segments = segments});
}

CShape Torus(float radius, float tubeRadius, int segments, int sides, bool textured) {
    CShape shape;
    const int stride = segments + (textured ? 1 : 0);
    const int rows = sides + (textured ? 1 : 0);
    for (int row = 0; row < rows; ++row) {
        const float v = static_cast<float>(row) / static_cast<float>(sides);
        const float r = radius + tubeRadius * std::cos(v * 2 * kPi);
        for (int i = 0; i < stride; ++i) {
            const float u = static_cast<float>(i) / static_cast<float>(segments);
            const CVec3 point{r * std::cos(u * 2 * kPi), r * std::sin(u * 2 * kPi),
                              tubeRadius * std::sin(v * 2 * kPi)};
            if (textured) {
                shape.AddPoint(point, {u, v});
            } else {
                shape.AddPoint(point);
            }
        }
    }
    for (int row = 0; row < sides; ++row) {
        const auto width = static_cast<std::uint32_t>(stride);
        JoinRows(shape, static_cast<std::uint32_t>(row) * width,
                 static_cast<std::uint32_t>((row + 1) % rows) * width, segments, stride, 1, false, false);
    }
    return shape;
}

CShape FlatRing(float innerRadius, float outerRadius, int segments) {
    CShape shape;
    for (int i = 0; i <= segments; ++i) {
        const float v = static_cast<float>(i) / static_cast<float>(segments);
        const CVec3 direction{std::cos(v * 2 * kPi), std::sin(v * 2 * kPi), 0};
        shape.AddPoint(direction * innerRadius, {0, v});
        shape.AddPoint(direction * outerRadius, {1, v});
    }
    for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(segments) * 2; i += 2) {
        shape.AddQuad(i, i + 1, i + 3, i + 2);
    }
    return shape;
}

CShape Box(CVec3 size) {
    // Each side: its normal, and the directions in which u and v grow.
    struct CSide {
        CVec3 out, u, v;
    };
    constexpr CSide kSides[] = {
        {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},  {{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}},
        {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}, {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}},
        {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}},  {{0, 0, -1}, {1, 0, 0}, {0, -1, 0}},
    };
    CShape shape;
    for (const CSide& side : kSides) {
        const auto first = static_cast<std::uint32_t>(shape.points.size());
        for (const CVec2 uv : {CVec2{0, 0}, CVec2{1, 0}, CVec2{1, 1}, CVec2{0, 1}}) {
            const CVec3 p = side.out + side.u * (uv.x * 2 - 1) + side.v * (uv.y * 2 - 1);
            shape.AddPoint({p.x * size.x / 2, p.y * size.y / 2, p.z * size.z / 2}, uv);
        }
        shape.AddQuad(first, first + 1, first + 2, first + 3, 0);
    }
    return shape;
}

}  // namespace shapes
