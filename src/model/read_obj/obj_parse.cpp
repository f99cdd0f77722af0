// SPDX-License-Identifier: MIT
#include "model/read_obj/obj_parse.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <thread>
#include <unordered_map>

#include "base/jobs/parallel_for.h"
#include "base/text/lng.h"
#include "model/read_obj/CObjCollector.h"
#include "model/read_obj/CObjLineFilter.h"
#include "model/read_obj/obj_points_and_lines.h"

namespace {

constexpr std::size_t kMaxText = (std::size_t{1} << 31) - 1;
constexpr std::size_t kMaxTriangles = 50'000'000;
constexpr std::size_t kBytesWorthAThread = 1'000'000;
// A triangle costs us some 110 bytes. An honest one takes over 6 bytes of text, except in small files; faces
// that use few vertices again and again may not make us take memory out of proportion to the file.
constexpr std::size_t kMaxNames = 16'384;  // a mesh or material takes 1 to 3 KB
constexpr std::size_t kFreeTriangles = 400'000, kBytesPerTriangle = 6;
// Beyond this the squares of lengths, and so bounding spheres, are no longer exact enough to aim a camera.
constexpr float kLargestCoordinate = 1e15f;

bool IsUsable(CVec3 p) {
    return std::abs(p.x) <= kLargestCoordinate && std::abs(p.y) <= kLargestCoordinate &&
           std::abs(p.z) <= kLargestCoordinate;
}

std::vector<CObjCollector> ReadParts(std::string_view text, unsigned threads) {
    if (threads == 0) threads = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t wanted = std::clamp<std::size_t>(text.size() / kBytesWorthAThread, 1, threads);
    std::vector<std::string_view> pieces;
    for (std::size_t begin = 0, i = 1; begin < text.size() || i == 1; ++i) {
        const std::size_t end =
            i >= wanted ? text.size()
                        : CObjLineFilter::CutAfter(text, std::max(begin, text.size() / wanted * i));
        pieces.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    std::vector<CObjCollector> parts(pieces.size());
    ParallelFor(pieces.size(), threads, [&](std::size_t i) { parts[i].Read(pieces[i]); });
    return parts;
}

/** Appends and gives the source's memory back. */
template <class T>
void Take(std::vector<T>& to, std::vector<T>& from) {
    if (to.empty()) {
        to = std::move(from);
    } else {
        to.insert(to.end(), from.begin(), from.end());
    }
    std::vector<T>().swap(from);
}

/** Indices from 0, and -1 for those that no entry has. */
void Resolve(std::vector<std::int32_t>& corners, std::size_t before, std::size_t count) {
    for (std::int32_t& corner : corners) {
        const std::int64_t index =
            corner == CObjCollector::kNone ? -1 : CObjCollector::Decode(corner, before);
        corner =
            index >= 0 && index < static_cast<std::int64_t>(count) ? static_cast<std::int32_t>(index) : -1;
    }
}

/** Walks the changes of all parts in order and writes down what is in force where faces begin. */
class CSegmentMaker {
  public:
    explicit CSegmentMaker(CObjGeometry& out) : m_out(out) {}

    void Add(const CObjCollector& part, std::uint32_t faceBase) {
        const bool beginsUnnamed = part.events.empty() || part.events.front().face > 0;
        if (m_out.segments.empty() && !part.faceEnds.empty() && beginsUnnamed) AddSegment(faceBase);
        for (std::size_t i = 0; i < part.events.size();) {
            const std::uint32_t face = part.events[i].face;
            for (; i < part.events.size() && part.events[i].face == face; ++i) Apply(part, part.events[i]);
            AddSegment(faceBase + face);
        }
    }

  private:
    void Apply(const CObjCollector& part, const CObjCollector::CEvent& event) {
        using enum CObjCollector::EChange;
        switch (event.kind) {
            case Object:
                m_object = part.names[event.value];
                break;
            case Group:
                m_group = part.names[event.value];
                break;
            case Material:
                m_material = part.names[event.value];
                break;
            case Smoothing:
                m_smoothing = event.value;
                m_out.smoothingStated = true;
                break;
        }
    }

    void AddSegment(std::uint32_t firstFace) {
        std::uint32_t group = Number(m_groups, m_out.groups, Name());
        std::int32_t material = -1;
        if (!m_material.empty())
            material = static_cast<std::int32_t>(Number(m_materials, m_out.materials, m_material));
        if (group == kMaxNames) group = kMaxNames - 1;
        if (material == static_cast<std::int32_t>(kMaxNames)) material = -1;
        if (!m_out.segments.empty() && m_out.segments.back().firstFace == firstFace)
            m_out.segments.pop_back();
        m_out.segments.push_back({firstFace, group, material, m_smoothing});
    }

    /** Exporters write the object's name alone, the group's alone, or a group
     * "object_material" in the object. */
    [[nodiscard]] std::string Name() const {
        if (m_object.empty()) return m_group;
        if (m_group.empty() || m_group == m_object) return m_object;
        return m_group.starts_with(m_object) ? m_group : m_object + "_" + m_group;
    }

    /** kMaxNames for a new one when there are that many. */
    std::uint32_t Number(std::unordered_map<std::string, std::uint32_t>& numbers,
                         std::vector<std::string>& names, const std::string& name) {
        const auto found = numbers.find(name);
        if (found != numbers.end()) return found->second;
        const auto number = static_cast<std::uint32_t>(names.size());
        if (number == kMaxNames) {
            m_out.tooManyNames = true;
            return number;
        }
        numbers.emplace(name, number);
        names.push_back(name);
        return number;
    }

    CObjGeometry& m_out;
    std::string m_object, m_group, m_material;
    std::uint32_t m_smoothing = 0;
    std::unordered_map<std::string, std::uint32_t> m_groups, m_materials;
};

void JoinCorners(CObjGeometry& out, std::vector<CObjCollector>& parts) {
    bool anyTexCoord = false, anyNormal = false;
    for (const CObjCollector& part : parts) {
        anyTexCoord = anyTexCoord || !part.cornerTexCoords.empty();
        anyNormal = anyNormal || !part.cornerNormals.empty();
    }
    CSegmentMaker segments(out);
    std::size_t positions = 0, texCoords = 0, normals = 0;
    for (CObjCollector& part : parts) {
        const std::size_t corners = part.cornerPositions.size();
        const auto cornerBase = static_cast<std::uint32_t>(out.cornerPositions.size());
        segments.Add(part, static_cast<std::uint32_t>(out.faceEnds.size()));
        if (anyTexCoord) part.cornerTexCoords.resize(corners, CObjCollector::kNone);
        if (anyNormal) part.cornerNormals.resize(corners, CObjCollector::kNone);
        Resolve(part.cornerPositions, positions, out.positions.size());
        Resolve(part.cornerTexCoords, texCoords, out.texCoords.size());
        Resolve(part.cornerNormals, normals, out.normals.size());
        for (std::uint32_t& end : part.faceEnds) end += cornerBase;
        positions += part.positions.size();
        texCoords += part.texCoords.size();
        normals += part.normals.size();
        Take(out.cornerPositions, part.cornerPositions);
        Take(out.cornerTexCoords, part.cornerTexCoords);
        Take(out.cornerNormals, part.cornerNormals);
        Take(out.faceEnds, part.faceEnds);
        out.droppedLines += part.droppedLines;
        std::move(part.libraries.begin(), part.libraries.end(), std::back_inserter(out.libraries));
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

CResult<CObjGeometry> Join(std::vector<CObjCollector> parts, std::size_t textSize) {
    std::size_t triangles = 0, elements = 0;
    for (const CObjCollector& part : parts) {
        triangles += part.triangles;
        elements += part.elements;
    }
    const std::size_t limit = std::min(kMaxTriangles, kFreeTriangles + textSize / kBytesPerTriangle);
    if (triangles > limit)
        return CError{EErrorCode::TooLarge, lng::Mark("the file has more triangles than we can take"), {}};
    CObjGeometry out;
    for (CObjCollector& part : parts) {
        // The counts stay readable for the indices that count from a part's own entries.
        out.positions.insert(out.positions.end(), part.positions.begin(), part.positions.end());
        out.texCoords.insert(out.texCoords.end(), part.texCoords.begin(), part.texCoords.end());
        out.normals.insert(out.normals.end(), part.normals.begin(), part.normals.end());
    }
    JoinCorners(out, parts);
    if (out.faceEnds.empty()) elements = MakePoints(out);
    for (CVec2& uv : out.texCoords) {
        if (!std::isfinite(uv.x) || !std::isfinite(uv.y)) uv = {};
    }
    for (CVec3& normal : out.normals) {
        if (!IsUsable(normal)) normal = {};
    }
    MarkBrokenFaces(out);
    if (elements == 0) return out;
    if (CStatus solid = MakePointsAndLinesSolid(out, limit - triangles); !solid) return solid.Error();
    return out;
}

}  // namespace

CResult<CObjGeometry> ParseObj(std::string_view text, unsigned threads) {
    if (text.size() > kMaxText)
        return CError{EErrorCode::TooLarge, lng::Mark("the file is larger than 2 GB"), {}};
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    return Join(ReadParts(text, threads), text.size());
}
