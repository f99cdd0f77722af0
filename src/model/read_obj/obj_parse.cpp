// SPDX-License-Identifier: MIT
#include "model/read_obj/obj_parse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>

#include "base/text/lng.h"
#include "model/read_obj/CObjText.h"
#include "model/read_obj/obj_points_and_lines.h"

namespace {

constexpr std::size_t kMaxText = (std::size_t{1} << 31) - 1;  // so that indices fit
constexpr std::size_t kMaxTriangles = 50'000'000;
// A triangle costs us some 110 bytes. An honest one takes over 6 bytes of text, except in small files; faces
// that use few vertices again and again may not make us take memory out of proportion to the file.
constexpr std::size_t kFreeTriangles = 400'000, kBytesPerTriangle = 6;
constexpr std::size_t kMaxNames = 16'384;  // a mesh or material takes 1 to 3 KB
constexpr std::size_t kMaxNameLength = 256;
constexpr std::size_t kMaxLibraryLines = 64, kMaxLibraryLength = 1024;
// Beyond this the squares of lengths, and so bounding spheres, are no longer exact enough to aim a camera.
constexpr float kLargestCoordinate = 1e15f;

bool IsUsable(CVec3 p) {
    return std::abs(p.x) <= kLargestCoordinate && std::abs(p.y) <= kLargestCoordinate &&
           std::abs(p.z) <= kLargestCoordinate;
}

/** Numbers names in the order of their first use. A tree, because no choice of names can make it slow. */
class CNameNumbers {
  public:
    explicit CNameNumbers(std::vector<std::string>& names) : m_names(names) {}

    /** kMaxNames for a new one when there are that many. */
    std::uint32_t Of(const std::string& name) {
        const auto found = m_numbers.find(name);
        if (found != m_numbers.end()) return found->second;
        const auto number = static_cast<std::uint32_t>(m_names.size());
        if (number == kMaxNames) return number;
        m_numbers.emplace(name, number);
        m_names.push_back(name);
        return number;
    }

  private:
    std::vector<std::string>& m_names;
    std::map<std::string, std::uint32_t> m_numbers;
};

/** Writes down what the lines say; indices are not compared with the number of entries yet. */
class CObjReader {
  public:
    CObjReader(std::string_view text, CObjGeometry& out)
        : m_text(text), m_out(out), m_groupNumbers(out.groups), m_materialNumbers(out.materials) {}

    void Read() {
        for (; !m_text.AtEnd(); m_text.NextLine()) {
            if (m_text.ToWord()) ReadLine(m_text.Word());
        }
        for (auto* corners : {&m_out.cornerTexCoords, &m_out.cornerNormals}) {
            if (!corners->empty()) corners->resize(m_out.cornerPositions.size(), -1);
        }
    }

    std::size_t triangles = 0;  ///< that the faces give
    std::size_t elements = 0;   ///< points and pieces of lines among the faces

  private:
    void ReadLine(std::string_view keyword);
    float Coordinate() { return m_text.ToWord() ? m_text.Number() : 0; }
    std::string_view Name() { return m_text.Rest().substr(0, kMaxNameLength); }

    void ReadFace() {
        const std::size_t first = m_out.cornerPositions.size(), firstTexCoord = m_out.cornerTexCoords.size(),
                          firstNormal = m_out.cornerNormals.size();
        while (m_text.ToWord()) ReadCorner();
        const std::size_t corners = m_out.cornerPositions.size() - first;
        if (corners >= 3) {
            triangles += corners - 2;
            return EndFace();
        }
        m_out.cornerPositions.resize(first);
        m_out.cornerTexCoords.resize(firstTexCoord);
        m_out.cornerNormals.resize(firstNormal);
    }

    void ReadCorner() {
        const auto append = [this](std::vector<std::int32_t>& corners, std::int32_t index) {
            if (corners.empty() && index < 0) return;
            corners.resize(m_out.cornerPositions.size() - 1, -1);  // corners before it that have none
            corners.push_back(index);
        };
        m_out.cornerPositions.push_back(m_text.Index(m_out.positions.size()));
        const bool hasMore = m_text.TakeSlash();
        append(m_out.cornerTexCoords, hasMore ? m_text.Index(m_out.texCoords.size()) : -1);
        append(m_out.cornerNormals, m_text.TakeSlash() ? m_text.Index(m_out.normals.size()) : -1);
        (void)m_text.Word();
    }

    /** Points are kept as faces of one corner, pieces of lines as faces of two. */
    void ReadElements(bool lines) {
        std::int32_t before = -1;
        for (bool isFirst = true; m_text.ToWord(); isFirst = false) {
            const std::int32_t corner = m_text.Index(m_out.positions.size());
            (void)m_text.Word();
            if (!lines || !isFirst) {
                if (lines) m_out.cornerPositions.push_back(before);
                m_out.cornerPositions.push_back(corner);
                ++elements;
                EndFace();
            }
            before = corner;
        }
    }

    void EndFace() {
        if (m_changed) AddSegment();
        m_out.faceEnds.push_back(static_cast<std::uint32_t>(m_out.cornerPositions.size()));
    }

    void AddSegment() {
        m_changed = false;
        m_out.smoothingStated = m_smoothingStated;
        std::uint32_t group = m_groupNumbers.Of(GroupName());
        std::int32_t material = -1;
        if (!m_material.empty()) material = static_cast<std::int32_t>(m_materialNumbers.Of(m_material));
        if (group == kMaxNames || material == static_cast<std::int32_t>(kMaxNames)) m_out.tooManyNames = true;
        if (group == kMaxNames) group = kMaxNames - 1;
        if (material == static_cast<std::int32_t>(kMaxNames)) material = -1;
        m_out.segments.push_back(
            {static_cast<std::uint32_t>(m_out.faceEnds.size()), group, material, m_smoothing});
    }

    /** Exporters write the object's name alone, the group's alone, or a group
     * "object_material" in the object. */
    [[nodiscard]] std::string GroupName() const {
        if (m_object.empty()) return m_group;
        if (m_group.empty() || m_group == m_object) return m_object;
        return m_group.starts_with(m_object) ? m_group : m_object + "_" + m_group;
    }

    void SetObject(std::string_view name) {
        m_object = name;
        if (!name.empty()) m_group.clear();  // a new object begins without the groups of the one before
        m_changed = true;
    }

    /** A face may be in several groups; their names make one. */
    void SetGroup(std::string_view names) {
        m_group.clear();
        for (const char c : names) {
            if (m_group.size() == kMaxNameLength) break;
            if (!CObjText::IsBlank(c)) {
                m_group.push_back(c);
            } else if (m_group.back() != ' ') {
                m_group.push_back(' ');
            }
        }
        m_changed = true;
    }

    void SetMaterial(std::string_view name) {
        m_material = name;
        m_changed = true;
    }

    void SetSmoothing(std::string_view group) {
        m_smoothing = group == "on" ? 1 : 0;  // "off" and other words mean 0
        (void)std::from_chars(group.data(), group.data() + group.size(), m_smoothing);
        m_smoothingStated = m_changed = true;
    }

    void AddLibrary(std::string_view line) {
        if (!line.empty() && m_out.libraries.size() < kMaxLibraryLines)
            m_out.libraries.emplace_back(line.substr(0, kMaxLibraryLength));
    }

    CObjText m_text;
    CObjGeometry& m_out;
    CNameNumbers m_groupNumbers, m_materialNumbers;
    // What applies to the next face.
    std::string m_object, m_group, m_material;
    std::uint32_t m_smoothing = 0;
    bool m_smoothingStated = false;
    bool m_changed = true;  ///< since the last face
};

void CObjReader::ReadLine(std::string_view keyword) {
    if (keyword == "v") {
        m_out.positions.push_back({Coordinate(), Coordinate(), Coordinate()});
    } else if (keyword == "f") {
        ReadFace();
    } else if (keyword == "vt") {
        m_out.texCoords.push_back({Coordinate(), Coordinate()});
    } else if (keyword == "vn") {
        m_out.normals.push_back({Coordinate(), Coordinate(), Coordinate()});
    } else if (keyword == "p" || keyword == "l") {
        ReadElements(keyword == "l");
    } else if (keyword == "o") {
        SetObject(Name());
    } else if (keyword == "g") {
        SetGroup(m_text.Rest());
    } else if (keyword == "usemtl") {
        SetMaterial(Name());
    } else if (keyword == "s") {
        SetSmoothing(m_text.ToWord() ? m_text.Word() : std::string_view());
    } else if (keyword == "mtllib") {
        AddLibrary(m_text.Rest());
    }
}

/** A cloud of points as scanners write it: every position becomes a point. Returns their number. */
std::size_t MakePoints(CObjGeometry& out) {
    out.cornerPositions.resize(out.positions.size());
    out.faceEnds.resize(out.positions.size());
    std::iota(out.cornerPositions.begin(), out.cornerPositions.end(), 0);
    std::iota(out.faceEnds.begin(), out.faceEnds.end(), 1u);
    out.groups = {std::string()};
    out.segments = {CObjSegment{}};
    return out.positions.size();
}

/** Indices beyond the last entry become -1. */
void CheckIndices(std::vector<std::int32_t>& corners, std::size_t count) {
    for (std::int32_t& corner : corners) {
        if (corner >= static_cast<std::int64_t>(count)) corner = -1;
    }
}

void MarkBrokenFaces(CObjGeometry& out) {
    for (std::size_t face = 0; face < out.faceEnds.size(); ++face) {
        const auto first = out.cornerPositions.begin() + out.FaceBegin(face);
        const auto last = out.cornerPositions.begin() + out.faceEnds[face];
        const bool usable = std::all_of(first, last, [&](std::int32_t corner) {
            return corner >= 0 && IsUsable(out.positions[static_cast<std::size_t>(corner)]);
        });
        if (usable) continue;
        *first = -1;
        ++(last - first < 3 ? out.brokenElements : out.brokenFaces);
    }
}

/** Checks and mends what the file says, so that the result can be relied on. */
void Mend(CObjGeometry& out) {
    CheckIndices(out.cornerPositions, out.positions.size());
    CheckIndices(out.cornerTexCoords, out.texCoords.size());
    CheckIndices(out.cornerNormals, out.normals.size());
    for (CVec2& uv : out.texCoords) {
        if (!std::isfinite(uv.x) || !std::isfinite(uv.y)) uv = {};
    }
    for (CVec3& normal : out.normals) {
        if (!IsUsable(normal)) normal = {};
    }
    MarkBrokenFaces(out);
}

}  // namespace

CResult<CObjGeometry> ParseObj(std::string_view text) {
    if (text.size() > kMaxText)
        return CError{EErrorCode::TooLarge, lng::Mark("the file is larger than 2 GB"), {}};
    CObjGeometry out;
    CObjReader reader(text, out);
    reader.Read();
    const std::size_t limit = std::min(kMaxTriangles, kFreeTriangles + text.size() / kBytesPerTriangle);
    if (reader.triangles > limit)
        return CError{EErrorCode::TooLarge, lng::Mark("the file has more triangles than we can take"), {}};
    const std::size_t elements = out.faceEnds.empty() ? MakePoints(out) : reader.elements;
    Mend(out);
    if (elements == 0) return out;
    if (CStatus solid = MakePointsAndLinesSolid(out, limit - reader.triangles); !solid) return solid.Error();
    return out;
}
