// SPDX-License-Identifier: MIT
#include "model/prepare/prepare_mesh.h"

#include <lib3ds/mesh.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <utility>

#include "base/CHashIndex.h"
#include "model/prepare/mesh_faces.h"
#include "model/scene/CScene.h"
#include "model/scene/mesh_access.h"

namespace {
/** A vertex of more faces than this gets its normals group by group, in linear time; faces that share two
 * groups then count twice. */
constexpr std::uint32_t kHugeFan = 128;

std::int16_t Snorm(float value) {
    return static_cast<std::int16_t>(std::lrint(value * 32767.0f));
}

/** The direction of a sum of faces; where they cancel each other, there is nothing to go by but the face. */
CVec3 NormalOf(const CMeshFace& face, CVec3 sum) {
    constexpr float kCancelled = 1e-12f;
    if (Dot(sum, sum) > kCancelled) return Normalized(sum);
    // Where no face can be trusted much, all weights are small.
    const CVec3 own = face.weighted[0] + face.weighted[1] + face.weighted[2];
    return Normalized(Dot(sum, sum) > kCancelled * Dot(own, own) ? sum : own);
}

/** The state of one mesh while it is prepared. */
class CMeshPreparer {
  public:
    CMeshPreparer(const CMeshView& view, std::uint32_t defaultMaterial, bool keepTexCoords)
        : m_view(view),
          m_defaultMaterial(defaultMaterial),
          m_texCoords(keepTexCoords && view.texelCount > 0) {}

    CPreparedMesh Run() {
        CMeshFaces faces = CollectFaces(m_view, m_texCoords);
        m_faces = std::move(faces.faces);
        m_source = std::move(faces.source);
        m_mesh.area = faces.area;
        m_weld = WeldPoints(m_view);
        CollectCorners();
        EmitVertices();
        EmitBatches();
        return std::move(m_mesh);
    }

  private:
    void CollectCorners();
    void EmitVertices();
    /** The corners at one place, as positions in m_corners. */
    struct CFan {
        std::uint32_t begin, end;
        bool onePoint = true;  ///< the file has one point for all
        bool turned = false;   ///< m_sides tells which faces are turned over against others
    };
    /** What corners of a fan have in common. */
    struct CCommon {
        std::uint32_t smoothing = ~0u;
        unsigned anyWrap = 0;
    };
    void EmitVertex(std::uint32_t begin, std::uint32_t end);
    CCommon LookAt(CFan& fan);
    [[nodiscard]] bool HasTurned(const CFan& fan);
    [[nodiscard]] std::uint16_t PlaceOfCorner(std::uint32_t corner, std::uint32_t after) const;
    void EmitSplitVertex(const CFan& fan);
    [[nodiscard]] std::uint16_t PointOfCorner(std::uint32_t corner) const;
    [[nodiscard]] std::uint32_t AddVertex(std::uint32_t point, CVec3 normal, unsigned wrap);
    [[nodiscard]] CVec3 SumOf(const CFan& fan) const;
    [[nodiscard]] CVec3 SumFor(std::uint32_t at, const CFan& fan) const;
    [[nodiscard]] bool IsSmooth(std::uint32_t own, std::uint32_t other, const CFan& fan) const;
    /** Sums of the faces of each smoothing group. */
    using CGroupSums = std::vector<CVec3>;
    [[nodiscard]] CGroupSums SumsByGroup(const CFan& fan) const;
    [[nodiscard]] static CVec3 SumFor(const CMeshFace& face, const CGroupSums& sums);
    void EmitBatches();
    /** Faces [begin, end) of one batch. */
    struct CRun {
        std::uint32_t begin, end, batch;
    };
    [[nodiscard]] std::vector<CRun> CountBatches();
    [[nodiscard]] std::uint32_t MaterialOf(std::uint32_t face) const;

    const CMeshView& m_view;
    std::uint32_t m_defaultMaterial;
    bool m_texCoords;
    CPreparedMesh m_mesh;
    std::vector<CMeshFace> m_faces;
    std::vector<std::uint32_t> m_source;  ///< for each of m_faces its number in the view
    std::vector<std::uint16_t> m_weld;    ///< for each point the first one at the same place; see WeldPoints
    CFanSides m_sides;
    std::vector<CFanSides::CCorner> m_fan;        ///< reused
    std::vector<std::uint32_t> m_firstCorner;     ///< for each point, and one more: where its corners begin
    std::vector<std::uint32_t> m_corners;         ///< face * 3 + corner, by point
    std::vector<std::uint32_t> m_vertexOfCorner;  ///< for each face * 3 + corner its prepared vertex
};

/** Corners by welded point, by counting. */
void CMeshPreparer::CollectCorners() {
    m_firstCorner.assign(m_view.pointCount + 1, 0);
    for (const CMeshFace& face : m_faces) {
        for (const std::uint16_t point : face.point) ++m_firstCorner[m_weld[point]];
    }
    std::uint32_t sum = 0;
    for (std::uint32_t& first : m_firstCorner) first = std::exchange(sum, sum + first);
    m_corners.resize(m_faces.size() * 3);
    std::uint32_t corner = 0;
    for (const CMeshFace& face : m_faces) {
        for (const std::uint16_t point : face.point) m_corners[m_firstCorner[m_weld[point]]++] = corner++;
    }
    // Each entry now holds its point's end, which is the next one's beginning.
    for (std::size_t i = m_firstCorner.size() - 1; i > 0; --i) m_firstCorner[i] = m_firstCorner[i - 1];
    m_firstCorner[0] = 0;
}

void CMeshPreparer::EmitVertices() {
    const std::size_t expected = m_view.pointCount + m_view.pointCount / 8;
    m_mesh.vertices.reserve(expected);
    if (m_texCoords) m_mesh.texCoords.reserve(expected);
    m_vertexOfCorner.resize(m_corners.size());
    for (std::uint32_t point = 0; point < m_view.pointCount; ++point) {
        EmitVertex(m_firstCorner[point], m_firstCorner[point + 1]);
    }
}

std::uint16_t CMeshPreparer::PointOfCorner(std::uint32_t corner) const {
    return m_faces[corner / 3].point[corner % 3];
}

std::uint16_t CMeshPreparer::PlaceOfCorner(std::uint32_t corner, std::uint32_t after) const {
    return m_weld[m_faces[corner / 3].point[(corner % 3 + after) % 3]];
}

CVec3 CMeshPreparer::SumOf(const CFan& fan) const {
    CVec3 sum;
    for (std::uint32_t i = fan.begin; i < fan.end; ++i) {
        sum = sum + m_faces[m_corners[i] / 3].weighted[m_corners[i] % 3];
    }
    return sum;
}

/** Whether the surface goes on smoothly from one corner of a fan to another; they share a smoothing group. */
bool CMeshPreparer::IsSmooth(std::uint32_t own, std::uint32_t other, const CFan& fan) const {
    const std::uint32_t a = m_corners[own], b = m_corners[other];
    const std::uint16_t pointA = PointOfCorner(a), pointB = PointOfCorner(b);
    if (pointA != pointB) {
        // What the map does not need to be two points was split on purpose.
        const CVec2 s = TexelOf(m_view, pointA), t = TexelOf(m_view, pointB);
        if (s.x == t.x && s.y == t.y) return false;
    }
    if (fan.turned) {
        const CFanSides::ERelation relation = m_sides.Relation(own - fan.begin, other - fan.begin);
        if (relation != CFanSides::ERelation::Unknown) return relation == CFanSides::ERelation::Same;
    } else if (pointA == pointB) {
        return true;
    }
    // The back of a sheet that is modelled with two sides lies at the same places, too.
    return Dot(m_faces[a / 3].weighted[a % 3], m_faces[b / 3].weighted[b % 3]) > 0;
}

CVec3 CMeshPreparer::SumFor(std::uint32_t at, const CFan& fan) const {
    const CMeshFace& own = m_faces[m_corners[at] / 3];
    CVec3 sum = own.weighted[m_corners[at] % 3];
    for (std::uint32_t i = fan.begin; i < fan.end && own.smoothing != 0; ++i) {
        const CMeshFace& face = m_faces[m_corners[i] / 3];
        if (i == at || (face.smoothing & own.smoothing) == 0 || !IsSmooth(at, i, fan)) continue;
        sum = sum + face.weighted[m_corners[i] % 3];
    }
    return sum;
}

CMeshPreparer::CGroupSums CMeshPreparer::SumsByGroup(const CFan& fan) const {
    CGroupSums sums(32);
    for (std::uint32_t i = fan.begin; i < fan.end; ++i) {
        const CMeshFace& face = m_faces[m_corners[i] / 3];
        for (std::uint32_t bits = face.smoothing; bits != 0; bits &= bits - 1) {
            CVec3& sum = sums[static_cast<std::size_t>(std::countr_zero(bits))];
            sum = sum + face.weighted[m_corners[i] % 3];
        }
    }
    return sums;
}

CVec3 CMeshPreparer::SumFor(const CMeshFace& face, const CGroupSums& sums) {
    CVec3 sum;
    for (std::uint32_t bits = face.smoothing; bits != 0; bits &= bits - 1) {
        sum = sum + sums[static_cast<std::size_t>(std::countr_zero(bits))];
    }
    return sum;
}

bool CMeshPreparer::HasTurned(const CFan& fan) {
    if (fan.end - fan.begin > kHugeFan) return false;
    m_fan.clear();
    for (std::uint32_t i = fan.begin; i < fan.end; ++i)
        m_fan.push_back({PlaceOfCorner(m_corners[i], 1), PlaceOfCorner(m_corners[i], 2)});
    return m_sides.Find(m_fan);
}

CMeshPreparer::CCommon CMeshPreparer::LookAt(CFan& fan) {
    CCommon common;
    const std::uint16_t point = PointOfCorner(m_corners[fan.begin]);
    // Round a point inside the surface each neighbour comes once after it and once before.
    const auto mixed = [this](std::uint16_t neighbour) {
        const std::uint32_t spread = m_weld[neighbour] * 0x9E3779B1u;
        return spread ^ (spread >> 15);
    };
    std::uint32_t balance = 0;
    constexpr std::uint32_t kAfter[3] = {1, 2, 0}, kBefore[3] = {2, 0, 1};
    for (std::uint32_t i = fan.begin; i < fan.end; ++i) {
        const CMeshFace& face = m_faces[m_corners[i] / 3];
        const std::uint32_t corner = m_corners[i] % 3;
        common.smoothing &= face.smoothing;
        common.anyWrap |= face.wrap;
        fan.onePoint &= face.point[corner] == point;
        balance += mixed(face.point[kAfter[corner]]) - mixed(face.point[kBefore[corner]]);
    }
    fan.turned = balance != 0 && HasTurned(fan);
    return common;
}

void CMeshPreparer::EmitVertex(std::uint32_t begin, std::uint32_t end) {
    if (begin == end) return;
    CFan fan{begin, end};
    const CCommon common = LookAt(fan);
    if (common.smoothing == 0 || common.anyWrap != 0 || !fan.onePoint || fan.turned)
        return EmitSplitVertex(fan);
    // By far the most: everything here is one smooth surface.
    const CVec3 normal = NormalOf(m_faces[m_corners[begin] / 3], SumOf(fan));
    const std::uint32_t vertex = AddVertex(PointOfCorner(m_corners[begin]), normal, 0);
    for (std::uint32_t i = begin; i < end; ++i) m_vertexOfCorner[m_corners[i]] = vertex;
}

void CMeshPreparer::EmitSplitVertex(const CFan& fan) {
    struct CDone {
        std::uint32_t smoothing;
        std::uint16_t point;
        unsigned wrap;
        std::uint32_t vertex;
    };
    constexpr std::size_t kMaxRemembered = 64;
    std::vector<CDone> done;
    const CGroupSums sums(fan.end - fan.begin > kHugeFan ? SumsByGroup(fan) : CGroupSums{});
    for (std::uint32_t i = fan.begin; i < fan.end; ++i) {
        const std::uint32_t corner = m_corners[i];
        const CMeshFace& face = m_faces[corner / 3];
        const std::uint16_t point = PointOfCorner(corner);
        const unsigned wrap = ((face.wrap >> (corner % 3)) & 1u) | ((face.wrap >> (corner % 3 + 2)) & 2u);
        const auto same = [&](const CDone& d) {
            return fan.onePoint && !fan.turned && face.smoothing != 0 && d.smoothing == face.smoothing &&
                   d.wrap == wrap;
        };
        const auto found = std::find_if(done.begin(), done.end(), same);
        if (found != done.end()) {
            m_vertexOfCorner[corner] = found->vertex;
            continue;
        }
        const CVec3 normal = NormalOf(face, sums.empty() ? SumFor(i, fan) : SumFor(face, sums));
        const std::int16_t packed[3] = {Snorm(normal.x), Snorm(normal.y), Snorm(normal.z)};
        const auto alike = [&](const CDone& d) {
            return d.wrap == wrap && d.point == point &&
                   std::equal(packed, packed + 3, m_mesh.vertices[d.vertex].normal);
        };
        const auto match = std::find_if(done.begin(), done.end(), alike);
        const std::uint32_t vertex = match != done.end() ? match->vertex : AddVertex(point, normal, wrap);
        m_vertexOfCorner[corner] = vertex;
        if (done.size() < kMaxRemembered) done.push_back({face.smoothing, point, wrap, vertex});
    }
}

std::uint32_t CMeshPreparer::AddVertex(std::uint32_t point, CVec3 normal, unsigned wrap) {
    const CVec3 p = PointOf(m_view, point);
    m_mesh.bounds.Add(p);
    m_mesh.vertices.push_back({{p.x, p.y, p.z}, {Snorm(normal.x), Snorm(normal.y), Snorm(normal.z), 0}});
    if (m_texCoords) {
        CVec2 uv = TexelOf(m_view, point);
        if (wrap & 1u) uv.x += 1;
        if (wrap & 2u) uv.y += 1;
        m_mesh.texCoords.push_back(uv);
    }
    return static_cast<std::uint32_t>(m_mesh.vertices.size() - 1);
}

std::uint32_t CMeshPreparer::MaterialOf(std::uint32_t face) const {
    if (m_view.faceMaterials.empty()) return m_defaultMaterial;
    const std::uint16_t material = m_view.faceMaterials[m_source[face]];
    return material == CMeshView::kNoMaterial ? m_defaultMaterial : material;
}

/** Makes the batches, in the order of their materials' first use, and the runs of faces that belong to one. Goes
 * by no list of all materials, as a file may have many of them and many meshes. */
std::vector<CMeshPreparer::CRun> CMeshPreparer::CountBatches() {
    std::vector<CRun> runs;
    CHashIndex batchOfMaterial;
    for (std::uint32_t face = 0; face < m_faces.size();) {
        const std::uint32_t material = MaterialOf(face);
        const auto fresh = static_cast<std::uint32_t>(m_mesh.batches.size());
        const auto isOf = [&](std::uint32_t batch) { return m_mesh.batches[batch].material == material; };
        const std::uint32_t batch = batchOfMaterial.FindOrAdd(material, fresh, isOf);
        if (batch == fresh) m_mesh.batches.push_back({material, 0, 0});
        const std::uint32_t begin = face++;
        while (face < m_faces.size() && MaterialOf(face) == material) ++face;
        runs.push_back({begin, face, batch});
        m_mesh.batches[batch].indexCount += (face - begin) * 3;
    }
    return runs;
}

/** Faces by material, each batch in the file's order. */
void CMeshPreparer::EmitBatches() {
    const std::vector<CRun> runs = CountBatches();
    std::vector<std::uint32_t> next;
    std::uint32_t sum = 0;
    for (CPreparedBatch& batch : m_mesh.batches) {
        batch.firstIndex = sum;
        next.push_back(sum);
        sum += batch.indexCount;
    }
    const auto fill = [&](auto& indices) {
        using Index = typename std::remove_reference_t<decltype(indices)>::value_type;
        indices.resize(sum);
        for (const CRun& run : runs) {
            std::uint32_t& at = next[run.batch];
            for (std::uint32_t corner = run.begin * 3; corner < run.end * 3; ++corner)
                indices[at++] = static_cast<Index>(m_vertexOfCorner[corner]);
        }
    };
    if (m_mesh.vertices.size() <= 65536)
        fill(m_mesh.indices16);
    else
        fill(m_mesh.indices32);
}

void SetNameAndPlace(const CMeshView& view, CPreparedMesh& mesh) {
    mesh.name = view.mesh->name;
    mesh.toLocal = view.matrix.AffineInverse();
    mesh.matrixMirrors = view.matrix.Determinant3() < 0;
}

std::uint64_t NextStamp() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

/** lib3ds turns the points of a mesh over whose matrix mirrors; here they are again as the file has them. */
std::vector<CVec3> PointsAsInFile(const CMeshView& view) {
    const CMat4 flip = FlipOf(view.matrix);
    std::vector<CVec3> points(view.pointCount);
    for (std::size_t i = 0; i < points.size(); ++i) points[i] = flip.TransformPoint(PointOf(view, i));
    return points;
}
}  // namespace

CPreparedMesh PrepareMesh(const CMeshView& view, std::uint32_t defaultMaterial, bool keepTexCoords) {
    const CMat4& matrix = view.matrix;
    if (matrix.Determinant3() < 0 && !view.pointsUnflipped) {
        const std::vector<CVec3> points = PointsAsInFile(view);
        CMeshView asInFile = view;
        asInFile.points = reinterpret_cast<const std::byte*>(points.data());
        asInFile.pointStride = sizeof(CVec3);
        asInFile.pointsUnflipped = true;
        return PrepareMesh(asInFile, defaultMaterial, keepTexCoords);
    }
    CPreparedMesh mesh = CMeshPreparer(view, defaultMaterial, keepTexCoords).Run();
    SetNameAndPlace(view, mesh);
    mesh.stamp = NextStamp();
    return mesh;
}

CPreparedMesh PrepareOutline(const CMeshView& view) {
    CPreparedMesh mesh;
    const CMat4 flip = view.pointsUnflipped ? CMat4{} : FlipOf(view.matrix);
    std::vector<char> isUsed(view.pointCount);
    for (std::size_t i = 0; i < view.faceCount; ++i) {
        const CFaceIndices face = FaceOf(view, i);
        if (face.a == face.b || face.b == face.c || face.a == face.c) continue;
        isUsed[face.a] = isUsed[face.b] = isUsed[face.c] = 1;
    }
    for (std::size_t i = 0; i < view.pointCount; ++i) {
        if (isUsed[i] != 0) mesh.bounds.Add(flip.TransformPoint(PointOf(view, i)));
    }
    SetNameAndPlace(view, mesh);
    return mesh;
}
