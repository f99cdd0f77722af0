// SPDX-License-Identifier: MIT
#include "model/read_obj/obj_points_and_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "base/CHashIndex.h"
#include "base/math/CBox.h"
#include "base/math/point_hash.h"
#include "base/text/lng.h"
#include "model/read_obj/obj_triangulate.h"

namespace {

constexpr std::size_t kMaxFineSolids = 50'000, kFineTriangles = 8, kCoarseTriangles = 4;

// ---- which of them are drawn

struct CElement {
    std::uint32_t face;
    std::uint32_t from, to;  ///< positions, of a point twice the same
};

/** Finds equal points and pieces of lines, and those that faces have too. */
class CElementChooser {
  public:
    explicit CElementChooser(const CObjGeometry& geometry)
        : m_geometry(geometry), m_places(geometry.positions.size(), CHashIndex::kNone) {}

    /** In the order of the faces. hasFaces: there are faces that are neither. */
    std::vector<CElement> Choose(bool& hasFaces) {
        hasFaces = false;
        ForEachFace([&](std::size_t face, std::span<const std::int32_t> corners) {
            if (corners.size() < 3) return Add(face, PlaceOf(corners.front()), PlaceOf(corners.back()));
            hasFaces = true;
        });
        if (hasFaces && !m_elements.empty()) DropThoseOfFaces();
        return std::move(m_elements);
    }

  private:
    template <class Use>
    void ForEachFace(Use use) const {
        for (std::size_t face = 0; face < m_geometry.faceEnds.size(); ++face) {
            const std::size_t begin = m_geometry.FaceBegin(face);
            if (m_geometry.cornerPositions[begin] < 0) continue;
            use(face,
                std::span(m_geometry.cornerPositions).subspan(begin, m_geometry.faceEnds[face] - begin));
        }
    }

    /** The first position met with these coordinates. */
    std::uint32_t PlaceOf(std::int32_t position) {
        std::uint32_t& place = m_places[static_cast<std::size_t>(position)];
        if (place != CHashIndex::kNone) return place;
        const CVec3 point = m_geometry.positions[static_cast<std::size_t>(position)];
        place =
            m_byPlace.FindOrAdd(point_hash::HashOf(point), static_cast<std::uint32_t>(position),
                                [&](std::uint32_t other) { return m_geometry.positions[other] == point; });
        return place;
    }

    static std::uint64_t KeyOf(std::uint32_t from, std::uint32_t to) {
        return (std::uint64_t{std::min(from, to)} << 32) | std::max(from, to);
    }
    auto HasKey(std::uint64_t key) const {
        return [this, key](std::uint32_t i) { return KeyOf(m_elements[i].from, m_elements[i].to) == key; };
    }

    void Add(std::size_t face, std::uint32_t from, std::uint32_t to) {
        const bool isLine = m_geometry.faceEnds[face] - m_geometry.FaceBegin(face) == 2;
        if (isLine && from == to) return;
        (isLine ? m_anyLine : m_anyPoint) = true;
        const auto fresh = static_cast<std::uint32_t>(m_elements.size());
        const std::uint64_t key = KeyOf(from, to);
        if (m_byKey.FindOrAdd(key, fresh, HasKey(key)) == fresh)
            m_elements.push_back({static_cast<std::uint32_t>(face), from, to});
    }

    void DropThoseOfFaces() {
        std::vector<bool> drop(m_elements.size());
        const auto mark = [&](std::uint32_t from, std::uint32_t to) {
            const std::uint64_t key = KeyOf(from, to);
            const std::uint32_t found = m_byKey.Find(key, HasKey(key));
            if (found != CHashIndex::kNone) drop[found] = true;
        };
        ForEachFace([&](std::size_t, std::span<const std::int32_t> corners) {
            if (corners.size() < 3) return;
            std::uint32_t before = PlaceOf(corners.back());
            for (const std::int32_t corner : corners) {
                const std::uint32_t place = PlaceOf(corner);
                if (m_anyPoint) mark(place, place);
                if (m_anyLine) mark(before, place);
                before = place;
            }
        });
        std::size_t i = 0;
        std::erase_if(m_elements, [&](const CElement&) { return drop[i++]; });
    }

    const CObjGeometry& m_geometry;
    std::vector<std::uint32_t> m_places;  ///< of each position, as far as asked for
    std::vector<CElement> m_elements;
    CHashIndex m_byPlace, m_byKey;
    bool m_anyPoint = false, m_anyLine = false;
};

// ---- how large they are

struct CSizes {
    float point = 0, line = 0;  ///< from the middle to the corners
};

CSizes SizesFor(const CObjGeometry& geometry, const std::vector<CElement>& elements) {
    CBox bounds;
    for (std::size_t face = 0; face < geometry.faceEnds.size(); ++face) {
        const std::size_t begin = geometry.FaceBegin(face);
        for (std::size_t i = begin; geometry.cornerPositions[begin] >= 0 && i < geometry.faceEnds[face]; ++i)
            bounds.Add(geometry.positions[static_cast<std::size_t>(geometry.cornerPositions[i])]);
    }
    double points = 0, length = 0;
    for (const CElement& element : elements) {
        points += element.from == element.to ? 1 : 0;
        length += double{Length(geometry.positions[element.to] - geometry.positions[element.from])};
    }
    float farthest = 0;
    for (const CVec3 corner : {bounds.min, bounds.max})
        farthest = std::max({farthest, std::abs(corner.x), std::abs(corner.y), std::abs(corner.z)});
    double diagonal = double{Length(bounds.max - bounds.min)};
    if (diagonal == 0) diagonal = farthest > 0 ? double{farthest} : 1;
    // Points cover a fifth of the model's extent at most, and lines two fifths.
    const double point = std::min(diagonal / 80, diagonal * 0.3 / std::sqrt(std::max(points, 1.0)));
    const double line = std::min(diagonal / 300, 0.2 * diagonal * diagonal / std::max(length, diagonal));
    // Below this the corners of a solid would be one number.
    const double least = double{farthest} * 1e-6;
    return {static_cast<float>(std::max(point, least)), static_cast<float>(std::max(line, least))};
}

// ---- what they look like

/** A solid in coordinates of its own; seen from outside the corners of its triangles
 * run counter-clockwise. */
struct CShape {
    std::span<const CVec3> points;
    std::span<const CTriangle> triangles;
};

// Of points: from the middle. Of lines: across the line, and from 0 to 1 along it.
constexpr std::array kOctahedronPoints = {CVec3{1, 0, 0},  CVec3{-1, 0, 0}, CVec3{0, 1, 0},
                                          CVec3{0, -1, 0}, CVec3{0, 0, 1},  CVec3{0, 0, -1}};
constexpr std::array<CTriangle, kFineTriangles> kOctahedronTriangles = {
    {{0, 2, 4}, {2, 1, 4}, {1, 3, 4}, {3, 0, 4}, {2, 0, 5}, {1, 2, 5}, {3, 1, 5}, {0, 3, 5}}};
// Turned so that from the corner from which a model is first seen, one side is met squarely and is bright.
constexpr std::array kTetrahedronPoints = {CVec3{-0.7f, -0.7f, -0.7f}, CVec3{-0.7f, 0.7f, 0.7f},
                                           CVec3{0.7f, -0.7f, 0.7f}, CVec3{0.7f, 0.7f, -0.7f}};
constexpr std::array<CTriangle, kCoarseTriangles> kTetrahedronTriangles = {
    {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}}};
constexpr std::array kPrismPoints = {CVec3{1, 0, 0}, CVec3{-0.5f, 0.866f, 0}, CVec3{-0.5f, -0.866f, 0},
                                     CVec3{1, 0, 1}, CVec3{-0.5f, 0.866f, 1}, CVec3{-0.5f, -0.866f, 1}};
constexpr std::array<CTriangle, kFineTriangles> kPrismTriangles = {
    {{0, 2, 1}, {3, 4, 5}, {0, 1, 4}, {0, 4, 3}, {1, 2, 5}, {1, 5, 4}, {2, 0, 3}, {2, 3, 5}}};
constexpr std::array kSliverPoints = {CVec3{1, 0, 0}, CVec3{-1, 0, 0}, CVec3{0, 1, 1}, CVec3{0, -1, 1}};
constexpr std::array<CTriangle, kCoarseTriangles> kSliverTriangles = {
    {{0, 2, 3}, {1, 3, 2}, {0, 1, 2}, {1, 0, 3}}};

/** Writes the faces anew, with solids for the elements and without those that have none. */
class CSolidMaker {
  public:
    CSolidMaker(CObjGeometry& geometry, CSizes sizes, bool fine)
        : m_geometry(geometry),
          m_sizes(sizes),
          m_point(fine ? CShape{kOctahedronPoints, kOctahedronTriangles}
                       : CShape{kTetrahedronPoints, kTetrahedronTriangles}),
          m_line(fine ? CShape{kPrismPoints, kPrismTriangles} : CShape{kSliverPoints, kSliverTriangles}) {}

    void Make(std::span<const CElement> elements) {
        auto segment = m_geometry.segments.begin();
        for (std::size_t face = 0; face < m_geometry.faceEnds.size(); ++face) {
            for (; segment != m_geometry.segments.end() && segment->firstFace == face; ++segment)
                segment->firstFace = static_cast<std::uint32_t>(m_faceEnds.size());
            const std::size_t begin = m_geometry.FaceBegin(face), end = m_geometry.faceEnds[face];
            if (end - begin >= 3) {
                CopyFace(begin, end);
            } else if (!elements.empty() && elements.front().face == face) {
                AddSolid(elements.front());
                elements = elements.subspan(1);
            }
        }
        m_geometry.faceEnds = std::move(m_faceEnds);
        m_geometry.cornerPositions = std::move(m_positions);
        m_geometry.cornerTexCoords = std::move(m_texCoords);
        m_geometry.cornerNormals = std::move(m_normals);
    }

  private:
    void CopyFace(std::size_t begin, std::size_t end) {
        const auto copy = [&](const std::vector<std::int32_t>& from, std::vector<std::int32_t>& to) {
            if (from.empty()) return;
            const auto first = from.begin() + static_cast<std::ptrdiff_t>(begin);
            to.insert(to.end(), first, first + static_cast<std::ptrdiff_t>(end - begin));
        };
        copy(m_geometry.cornerPositions, m_positions);
        copy(m_geometry.cornerTexCoords, m_texCoords);
        copy(m_geometry.cornerNormals, m_normals);
        m_faceEnds.push_back(static_cast<std::uint32_t>(m_positions.size()));
    }

    void AddSolid(const CElement& element) {
        const CVec3 from = m_geometry.positions[element.from];
        if (element.from == element.to) {
            const float size = m_sizes.point;
            ++m_geometry.solidPoints;
            return AddShape(m_point, from, {size, 0, 0}, {0, size, 0}, {0, 0, size});
        }
        const CVec3 along = m_geometry.positions[element.to] - from;
        const bool isUpright = std::abs(along.y) > std::max(std::abs(along.x), std::abs(along.z));
        const CVec3 side = Normalized(Cross(along, isUpright ? CVec3{1, 0, 0} : CVec3{0, 1, 0}));
        ++m_geometry.solidLines;
        AddShape(m_line, from, side * m_sizes.line, Cross(Normalized(along), side) * m_sizes.line, along);
    }

    void AddShape(const CShape& shape, CVec3 origin, CVec3 x, CVec3 y, CVec3 z) {
        const std::size_t first = m_geometry.positions.size();
        for (const CVec3 p : shape.points)
            m_geometry.positions.push_back(origin + x * p.x + y * p.y + z * p.z);
        for (const CTriangle& triangle : shape.triangles) {
            for (const std::uint32_t corner : triangle)
                m_positions.push_back(static_cast<std::int32_t>(first + corner));
            m_faceEnds.push_back(static_cast<std::uint32_t>(m_positions.size()));
        }
        if (!m_geometry.cornerTexCoords.empty()) m_texCoords.resize(m_positions.size(), -1);
        if (!m_geometry.cornerNormals.empty()) m_normals.resize(m_positions.size(), -1);
    }

    CObjGeometry& m_geometry;
    const CSizes m_sizes;
    const CShape m_point, m_line;
    std::vector<std::int32_t> m_positions, m_texCoords, m_normals;  ///< of the corners
    std::vector<std::uint32_t> m_faceEnds;
};

}  // namespace

CStatus MakePointsAndLinesSolid(CObjGeometry& geometry, std::size_t trianglesLeft) {
    bool hasFaces = false;
    std::vector<CElement> elements = CElementChooser(geometry).Choose(hasFaces);
    const bool fine = elements.size() <= kMaxFineSolids;
    if (elements.size() > trianglesLeft / (fine ? kFineTriangles : kCoarseTriangles)) {
        if (!hasFaces)
            return CError{
                EErrorCode::TooLarge, lng::Mark("the file has more points and lines than we can take"), {}};
        geometry.crowdedOut = elements.size();
        elements.clear();
    }
    const CSizes sizes = elements.empty() ? CSizes{} : SizesFor(geometry, elements);
    CSolidMaker(geometry, sizes, fine).Make(elements);
    return CDone{};
}
