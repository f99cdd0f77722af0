// SPDX-License-Identifier: MIT
#include "model/prepare/mesh_faces.h"

#include <lib3ds/mesh.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>

#include "base/CHashIndex.h"
#include "base/math/point_hash.h"
#include "model/scene/CScene.h"
#include "model/scene/mesh_access.h"

namespace {
constexpr std::uint16_t kWrapU = LIB3DS_FACE_FLAG_WRAP_U, kWrapV = LIB3DS_FACE_FLAG_WRAP_V;
constexpr auto kTiny = static_cast<float>(kNoLength);

/** acos to within 7e-5 rad, ten times as fast (Abramowitz and Stegun, Handbook of Mathematical
 * Functions, 4.4.45). */
float FastAcos(float x) {
    const float a = std::min(std::abs(x), 1.0f);
    const float r =
        std::sqrt(1.0f - a) * (1.5707288f + a * (-0.2121144f + a * (0.0742610f - a * 0.0187293f)));
    return x < 0 ? std::numbers::pi_v<float> - r : r;
}

/** The error to reckon with in a coordinate: what a few roundings of the largest one add up to, as exporters
 * turn and move points, and print them with six digits. */
float PointError(const CMeshView& view) {
    constexpr float kShare = 0x1p-20f;
    float largest = 0;
    for (std::size_t i = 0; i < view.pointCount; ++i) {
        const CVec3 p = PointOf(view, i);
        largest = std::max(std::max(std::abs(p.x), std::abs(p.y)), std::max(std::abs(p.z), largest));
    }
    return std::max(largest * kShare, kTiny);
}

/** Faces that are weighed together, number by number, so that the compiler takes four of them at a time. */
struct CWeighedFaces {
    static constexpr std::size_t kMost = 64;
    using CNumbers = std::array<float, kMost>;
    struct CPlaces {
        CNumbers x, y, z;

        void Set(std::size_t i, CVec3 p) {
            x[i] = p.x;
            y[i] = p.y;
            z[i] = p.z;
        }
        [[nodiscard]] CVec3 At(std::size_t i) const { return {x[i], y[i], z[i]}; }
    };
    CPlaces a{}, b{}, c{};             ///< the corners
    CPlaces normal{};                  ///< times how far it can be trusted
    std::array<CNumbers, 3> angles{};  ///< at the corners
    CNumbers twiceArea{};

    /** errors: one over the error of a point. */
    void Weigh(float errors);
};

struct CEdgeOfFace {
    explicit CEdgeOfFace(CVec3 along)
        : length(Length(along)), inverse(1 / std::max(length, kTiny)), direction(along * inverse) {}
    float length, inverse;
    CVec3 direction;
};

void CWeighedFaces::Weigh(float errors) {
    for (std::size_t i = 0; i < kMost; ++i) {
        const CVec3 pa = a.At(i), pb = b.At(i), pc = c.At(i);
        const CEdgeOfFace first(pb - pa), second(pc - pb), third(pc - pa);
        const CVec3 across = Cross(first.direction, third.direction);
        const float sine = Length(across);
        const float perLongest = std::min(std::min(first.inverse, second.inverse), third.inverse);
        // Times the sine this is the face's height over its longest edge, in errors of a point.
        const float scale = first.length * perLongest * (third.length * errors);
        const float squared = sine * sine * scale * scale;
        normal.Set(i, across * (scale * scale * sine * squared / (1 + squared * squared)));
        const float angleA = FastAcos(Dot(first.direction, third.direction));
        const float angleB = FastAcos(-Dot(first.direction, second.direction));
        angles[0][i] = angleA;
        angles[1][i] = angleB;
        angles[2][i] = std::max(std::numbers::pi_v<float> - angleA - angleB, 0.0f);
        twiceArea[i] = sine * first.length * third.length;
    }
}

/** Weighs the faces of a mesh as they are collected. */
class CFaceWeigher {
  public:
    CFaceWeigher(CMeshFaces& faces, float errors) : m_faces(faces), m_errors(errors) {}

    /** The corners of the face that was collected last. */
    void Add(CVec3 a, CVec3 b, CVec3 c) {
        m_some.a.Set(m_count, a);
        m_some.b.Set(m_count, b);
        m_some.c.Set(m_count, c);
        if (++m_count == CWeighedFaces::kMost) Finish();
    }
    void Finish() {
        m_some.Weigh(m_errors);
        const std::size_t first = m_faces.faces.size() - m_count;
        for (std::size_t i = 0; i < m_count; ++i) {
            CMeshFace& face = m_faces.faces[first + i];
            for (std::size_t k = 0; k < 3; ++k) face.weighted[k] = m_some.normal.At(i) * m_some.angles[k][i];
            m_faces.area += static_cast<double>(m_some.twiceArea[i]) / 2;
        }
        m_count = 0;
    }

  private:
    CMeshFaces& m_faces;
    float m_errors;
    CWeighedFaces m_some;
    std::size_t m_count = 0;
};

std::uint16_t WrapOf(const CMeshView& view, const CFaceIndices& face) {
    if ((face.flags & (kWrapU | kWrapV)) == 0) return 0;
    const CVec2 uv[3] = {TexelOf(view, face.a), TexelOf(view, face.b), TexelOf(view, face.c)};
    unsigned wrap = 0;
    const auto mark = [&](float a, float b, float c, unsigned shift) {
        // Only a face that really spans the seam: other programs leave the flags set at random.
        if (std::max({a, b, c}) - std::min({a, b, c}) <= 0.5f) return;
        const float value[3] = {a, b, c};
        for (unsigned i = 0; i < 3; ++i) wrap |= value[i] < 0.5f ? 1u << (shift + i) : 0u;
    };
    if (face.flags & kWrapU) mark(uv[0].x, uv[1].x, uv[2].x, 0);
    if (face.flags & kWrapV) mark(uv[0].y, uv[1].y, uv[2].y, 3);
    return static_cast<std::uint16_t>(wrap);
}
}  // namespace

CMeshFaces CollectFaces(const CMeshView& view, bool hasTexCoords) {
    CMeshFaces result;
    result.faces.reserve(view.faceCount);
    result.source.reserve(view.faceCount);
    CFaceWeigher weigher(result, 1 / PointError(view));
    for (std::size_t i = 0; i < view.faceCount; ++i) {
        const CFaceIndices face = FaceOf(view, i);
        if (face.a == face.b || face.b == face.c || face.a == face.c) continue;
        CMeshFace made;
        made.point[0] = face.a;
        made.point[1] = face.b;
        made.point[2] = face.c;
        made.wrap = hasTexCoords ? WrapOf(view, face) : std::uint16_t{0};
        made.smoothing = SmoothingOf(view, i);
        result.faces.push_back(made);
        result.source.push_back(static_cast<std::uint32_t>(i));
        weigher.Add(PointOf(view, face.a), PointOf(view, face.b), PointOf(view, face.c));
    }
    weigher.Finish();
    return result;
}

std::vector<std::uint16_t> WeldPoints(const CMeshView& view) {
    std::vector<std::uint16_t> weld(view.pointCount);
    std::iota(weld.begin(), weld.end(), std::uint16_t{0});
    if (view.texelCount == 0) return weld;
    CHashIndex places(view.pointCount);
    for (std::uint32_t i = 0; i < view.pointCount; ++i) {
        const CVec3 p = PointOf(view, i);
        const auto isHere = [&](std::uint32_t other) { return PointOf(view, other) == p; };
        weld[i] = static_cast<std::uint16_t>(places.FindOrAdd(point_hash::HashOf(p), i, isHere));
    }
    return weld;
}

/** Two that go to, or come from, the same point. */
bool CFanSides::MayBeTurned(std::span<const CCorner> fan) {
    constexpr std::size_t kFewPairs = 16;
    if (fan.size() > kFewPairs) return true;
    for (std::size_t i = 1; i < fan.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (fan[i].next == fan[j].next || fan[i].previous == fan[j].previous) return true;
        }
    }
    return false;
}

void CFanSides::SortEdges(std::span<const CCorner> fan) {
    m_edges.clear();
    for (std::uint32_t i = 0; i < fan.size(); ++i) {
        m_edges.push_back({fan[i].next, i, true});
        m_edges.push_back({fan[i].previous, i, false});
    }
    std::sort(m_edges.begin(), m_edges.end(),
              [](const CEdge& a, const CEdge& b) { return a.point < b.point; });
}

bool CFanSides::Find(std::span<const CCorner> fan) {
    if (!MayBeTurned(fan)) return false;
    SortEdges(fan);
    m_sides.clear();
    for (std::uint32_t i = 0; i < fan.size(); ++i) m_sides.push_back({i, 1, false});
    bool any = false;
    for (auto first = m_edges.begin(); first != m_edges.end();) {
        const auto end =
            std::find_if(first, m_edges.end(), [&](const CEdge& e) { return e.point != first->point; });
        if (end - first == 2) {
            any |= first[0].leads == first[1].leads;
            Join(first[0], first[1]);
        }
        first = end;
    }
    return any;
}

std::pair<std::uint32_t, bool> CFanSides::Root(std::size_t corner) const {
    bool turned = false;
    auto at = static_cast<std::uint32_t>(corner);
    while (m_sides[at].parent != at) {
        turned ^= m_sides[at].turned;
        at = m_sides[at].parent;
    }
    return {at, turned};
}

void CFanSides::Join(const CEdge& one, const CEdge& other) {
    auto [a, turnedA] = Root(one.corner);
    auto [b, turnedB] = Root(other.corner);
    if (a == b) return;
    if (m_sides[a].size < m_sides[b].size) std::swap(a, b);
    m_sides[a].size += m_sides[b].size;
    m_sides[b].parent = a;
    m_sides[b].turned = (turnedA != turnedB) != (one.leads == other.leads);
}

CFanSides::ERelation CFanSides::Relation(std::size_t one, std::size_t other) const {
    const auto [a, turnedA] = Root(one);
    const auto [b, turnedB] = Root(other);
    if (a != b) return ERelation::Unknown;
    return turnedA == turnedB ? ERelation::Same : ERelation::TurnedOver;
}
