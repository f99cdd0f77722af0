// SPDX-License-Identifier: MIT
#include "model/prepare/prepare_mesh.h"

#include <lib3ds/mesh.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <numbers>
#include <numeric>

#include "base/CHashIndex.h"
#include "model/scene/CScene.h"
#include "model/scene/mesh_access.h"

namespace {
/** A vertex of more faces than this gets its normals group by group, in linear time; faces that share two
 * groups then count twice. */
constexpr std::uint32_t kHugeFan = 4096;
constexpr std::uint16_t kWrapU = LIB3DS_FACE_FLAG_WRAP_U, kWrapV = LIB3DS_FACE_FLAG_WRAP_V;

/** acos to within 7e-5 rad, ten times as fast (Abramowitz and Stegun, Handbook of Mathematical
 * Functions, 4.4.45). */
float FastAcos(float x) {
    const float a = std::min(std::abs(x), 1.0f);
    const float r =
        std::sqrt(1.0f - a) * (1.5707288f + a * (-0.2121144f + a * (0.0742610f - a * 0.0187293f)));
    return x < 0 ? std::numbers::pi_v<float> - r : r;
}

std::int16_t Snorm(float value) {
    return static_cast<std::int16_t>(std::lrint(value * 32767.0f));
}

struct CFaceWork {
    std::uint16_t point[3];
    std::uint16_t wrap;  ///< bits 0..2: u of that corner is moved up; bits 3..5: v
    std::uint32_t smoothing;
    CVec3 weighted[3];  ///< unit normal times the angle at each corner
};

/** The state of one mesh while it is prepared. */
class CMeshPreparer {
  public:
    CMeshPreparer(const CMeshView& view, std::uint32_t defaultMaterial, bool keepTexCoords)
        : m_view(view),
          m_defaultMaterial(defaultMaterial),
          m_texCoords(keepTexCoords && view.texelCount > 0) {}

    CPreparedMesh Run() {
        CollectFaces();
        WeldPoints();
        CollectCorners();
        EmitVertices();
        EmitBatches();
        return std::move(m_mesh);
    }

  private:
    void CollectFaces();
    [[nodiscard]] std::uint16_t WrapOf(const CFaceIndices& face) const;
    void WeldPoints();
    void CollectCorners();
    void EmitVertices();
    void EmitVertex(std::uint32_t begin, std::uint32_t end);
    void EmitSplitVertex(std::uint32_t begin, std::uint32_t end, bool onePoint);
    [[nodiscard]] std::uint16_t PointOfCorner(std::uint32_t corner) const;
    [[nodiscard]] std::uint32_t AddVertex(std::uint32_t point, CVec3 normal, unsigned wrap);
    [[nodiscard]] CVec3 NormalOfCorner(std::uint32_t corner, std::uint32_t begin, std::uint32_t end) const;
    /** Sums of the faces of each smoothing group. */
    using CGroupSums = std::vector<CVec3>;
    [[nodiscard]] CGroupSums SumsByGroup(std::uint32_t begin, std::uint32_t end) const;
    [[nodiscard]] static CVec3 NormalFromSums(const CFaceWork& face, const CGroupSums& sums);
    void EmitBatches();
    [[nodiscard]] std::uint32_t MaterialOf(std::uint32_t face) const;

    const CMeshView& m_view;
    std::uint32_t m_defaultMaterial;
    bool m_texCoords;
    CPreparedMesh m_mesh;
    std::vector<CFaceWork> m_faces;
    std::vector<std::uint32_t> m_source;  ///< for each of m_faces its number in the view
    std::vector<std::uint16_t> m_weld;    ///< for each point the first one at the same place; see WeldPoints
    std::vector<std::uint32_t> m_firstCorner;     ///< for each point, and one more: where its corners begin
    std::vector<std::uint32_t> m_corners;         ///< face * 3 + corner, by point
    std::vector<std::uint32_t> m_vertexOfCorner;  ///< for each face * 3 + corner its prepared vertex
};

void CMeshPreparer::CollectFaces() {
    m_faces.reserve(m_view.faceCount);
    m_source.reserve(m_view.faceCount);
    for (std::size_t i = 0; i < m_view.faceCount; ++i) {
        const CFaceIndices face = FaceOf(m_view, i);
        if (face.a == face.b || face.b == face.c || face.a == face.c) continue;
        const CVec3 p[3] = {PointOf(m_view, face.a), PointOf(m_view, face.b), PointOf(m_view, face.c)};
        const CVec3 edge[3] = {Normalized(p[1] - p[0]), Normalized(p[2] - p[1]), Normalized(p[0] - p[2])};
        const CVec3 normal = Normalized(Cross(edge[0], -edge[2]));
        const float first = FastAcos(-Dot(edge[0], edge[2])), second = FastAcos(-Dot(edge[1], edge[0]));
        const float third = std::max(std::numbers::pi_v<float> - first - second, 0.0f);
        m_faces.push_back({{face.a, face.b, face.c},
                           WrapOf(face),
                           SmoothingOf(m_view, i),
                           {normal * first, normal * second, normal * third}});
        m_source.push_back(static_cast<std::uint32_t>(i));
    }
}

std::uint16_t CMeshPreparer::WrapOf(const CFaceIndices& face) const {
    if (!m_texCoords || (face.flags & (kWrapU | kWrapV)) == 0) return 0;
    const CVec2 uv[3] = {TexelOf(m_view, face.a), TexelOf(m_view, face.b), TexelOf(m_view, face.c)};
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

/** Exporters repeat a point where the map has a seam; its surface is smooth all the same. Without a map
 * points are repeated on purpose. */
void CMeshPreparer::WeldPoints() {
    m_weld.resize(m_view.pointCount);
    std::iota(m_weld.begin(), m_weld.end(), std::uint16_t{0});
    if (m_view.texelCount == 0) return;
    CHashIndex places;
    for (std::uint32_t i = 0; i < m_view.pointCount; ++i) {
        const CVec3 p = PointOf(m_view, i);
        const auto bits = [](float value) { return std::uint64_t{std::bit_cast<std::uint32_t>(value)}; };
        const std::uint64_t key = (bits(p.x) << 32 | bits(p.y)) ^ (bits(p.z) * 0x9E3779B97F4A7C15u);
        const auto isHere = [&](std::uint32_t other) { return PointOf(m_view, other) == p; };
        m_weld[i] = static_cast<std::uint16_t>(places.FindOrAdd(key, i, isHere));
    }
}

/** Corners by welded point, by counting. */
void CMeshPreparer::CollectCorners() {
    m_firstCorner.assign(m_view.pointCount + 1, 0);
    for (const CFaceWork& face : m_faces) {
        for (const std::uint16_t point : face.point) ++m_firstCorner[m_weld[point]];
    }
    std::uint32_t sum = 0;
    for (std::uint32_t& first : m_firstCorner) first = std::exchange(sum, sum + first);
    m_corners.resize(m_faces.size() * 3);
    std::uint32_t corner = 0;
    for (const CFaceWork& face : m_faces) {
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

CVec3 CMeshPreparer::NormalOfCorner(std::uint32_t corner, std::uint32_t begin, std::uint32_t end) const {
    const CFaceWork& own = m_faces[corner / 3];
    const std::uint16_t ownPoint = PointOfCorner(corner);
    CVec3 sum;
    for (std::uint32_t i = begin; i < end && own.smoothing != 0; ++i) {
        const CFaceWork& face = m_faces[m_corners[i] / 3];
        if ((face.smoothing & own.smoothing) == 0) continue;
        const CVec3 weighted = face.weighted[m_corners[i] % 3];
        // The back of a sheet that is modelled with two sides lies at the same places, too.
        if (PointOfCorner(m_corners[i]) != ownPoint && Dot(weighted, own.weighted[corner % 3]) <= 0) continue;
        sum = sum + weighted;
    }
    // Faces that cancel each other leave nothing to go by but the face itself.
    if (Dot(sum, sum) < 1e-12f) sum = own.weighted[0] + own.weighted[1] + own.weighted[2];
    return Normalized(sum);
}

CMeshPreparer::CGroupSums CMeshPreparer::SumsByGroup(std::uint32_t begin, std::uint32_t end) const {
    CGroupSums sums(32);
    for (std::uint32_t i = begin; i < end; ++i) {
        const CFaceWork& face = m_faces[m_corners[i] / 3];
        for (std::uint32_t bits = face.smoothing; bits != 0; bits &= bits - 1) {
            CVec3& sum = sums[static_cast<std::size_t>(std::countr_zero(bits))];
            sum = sum + face.weighted[m_corners[i] % 3];
        }
    }
    return sums;
}

CVec3 CMeshPreparer::NormalFromSums(const CFaceWork& face, const CGroupSums& sums) {
    CVec3 sum;
    for (std::uint32_t bits = face.smoothing; bits != 0; bits &= bits - 1) {
        sum = sum + sums[static_cast<std::size_t>(std::countr_zero(bits))];
    }
    if (Dot(sum, sum) < 1e-12f) sum = face.weighted[0] + face.weighted[1] + face.weighted[2];
    return Normalized(sum);
}

void CMeshPreparer::EmitVertex(std::uint32_t begin, std::uint32_t end) {
    if (begin == end) return;
    std::uint32_t common = ~0u;
    unsigned anyWrap = 0;
    const std::uint16_t point = PointOfCorner(m_corners[begin]);
    bool onePoint = true;
    for (std::uint32_t i = begin; i < end; ++i) {
        common &= m_faces[m_corners[i] / 3].smoothing;
        anyWrap |= m_faces[m_corners[i] / 3].wrap;
        onePoint &= PointOfCorner(m_corners[i]) == point;
    }
    if (common == 0 || anyWrap != 0 || !onePoint) return EmitSplitVertex(begin, end, onePoint);
    // By far the most: everything here is one smooth surface.
    const std::uint32_t vertex = AddVertex(point, NormalOfCorner(m_corners[begin], begin, end), 0);
    for (std::uint32_t i = begin; i < end; ++i) m_vertexOfCorner[m_corners[i]] = vertex;
}

void CMeshPreparer::EmitSplitVertex(std::uint32_t begin, std::uint32_t end, bool onePoint) {
    struct CDone {
        std::uint32_t smoothing;
        std::uint16_t point;
        unsigned wrap;
        std::uint32_t vertex;
    };
    constexpr std::size_t kMaxRemembered = 64;
    std::vector<CDone> done;
    const CGroupSums sums(end - begin > kHugeFan ? SumsByGroup(begin, end) : CGroupSums{});
    for (std::uint32_t i = begin; i < end; ++i) {
        const std::uint32_t corner = m_corners[i];
        const CFaceWork& face = m_faces[corner / 3];
        const std::uint16_t point = PointOfCorner(corner);
        const unsigned wrap = ((face.wrap >> (corner % 3)) & 1u) | ((face.wrap >> (corner % 3 + 2)) & 2u);
        const auto same = [&](const CDone& d) {
            return onePoint && face.smoothing != 0 && d.smoothing == face.smoothing && d.wrap == wrap;
        };
        const auto found = std::find_if(done.begin(), done.end(), same);
        if (found != done.end()) {
            m_vertexOfCorner[corner] = found->vertex;
            continue;
        }
        const CVec3 normal = sums.empty() ? NormalOfCorner(corner, begin, end) : NormalFromSums(face, sums);
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

/** Faces by material, in the order of the materials' first use, each batch in the file's order. */
void CMeshPreparer::EmitBatches() {
    std::vector<std::uint32_t> batchOfMaterial(m_defaultMaterial + 1, ~0u);
    for (std::uint32_t face = 0; face < m_faces.size(); ++face) {
        const std::uint32_t material = MaterialOf(face);
        if (batchOfMaterial[material] == ~0u) {
            batchOfMaterial[material] = static_cast<std::uint32_t>(m_mesh.batches.size());
            m_mesh.batches.push_back({material, 0, 0});
        }
        m_mesh.batches[batchOfMaterial[material]].indexCount += 3;
    }
    std::vector<std::uint32_t> next;
    std::uint32_t sum = 0;
    for (CPreparedBatch& batch : m_mesh.batches) {
        batch.firstIndex = sum;
        next.push_back(sum);
        sum += batch.indexCount;
    }
    const auto fill = [&](auto& indices) {
        indices.resize(sum);
        for (std::uint32_t face = 0; face < m_faces.size(); ++face) {
            std::uint32_t& at = next[batchOfMaterial[MaterialOf(face)]];
            for (std::uint32_t corner = face * 3; corner < face * 3 + 3; ++corner) {
                using Index = typename std::remove_reference_t<decltype(indices)>::value_type;
                indices[at++] = static_cast<Index>(m_vertexOfCorner[corner]);
            }
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
    for (std::size_t i = 0; i < view.faceCount; ++i) {
        const CFaceIndices face = FaceOf(view, i);
        if (face.a == face.b || face.b == face.c || face.a == face.c) continue;
        for (const std::uint16_t point : {face.a, face.b, face.c})
            mesh.bounds.Add(flip.TransformPoint(PointOf(view, point)));
    }
    SetNameAndPlace(view, mesh);
    return mesh;
}
