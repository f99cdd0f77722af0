// SPDX-License-Identifier: MIT
#include "export/pov/text/pov_mesh2.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "base/CHashIndex.h"
#include "export/pov/text/CPovMesh.h"
#include "export/pov/text/CPovText.h"
#include "export/pov/text/pov_parts.h"

namespace {

constexpr std::uint32_t kNone = UINT32_MAX;
constexpr std::size_t kEntriesPerLine = 8;

/** Numbers things in the order in which they are first asked for. */
class CNumbering {
  public:
    explicit CNumbering(std::size_t things) : m_number(things, kNone) {}
    std::uint32_t Of(std::uint32_t thing) {
        if (m_number[thing] == kNone) {
            m_number[thing] = static_cast<std::uint32_t>(m_order.size());
            m_order.push_back(thing);
        }
        return m_number[thing];
    }
    [[nodiscard]] const std::vector<std::uint32_t>& Order() const { return m_order; }

  private:
    std::vector<std::uint32_t> m_number, m_order;
};

/** A list of a part: its entries, and for each used vertex the index of its entry. */
struct CEntries {
    std::vector<std::array<std::uint32_t, 3>> entries;  ///< position, normal, texture coordinate; 0 if unused
    std::vector<std::uint32_t> ofVertex;                ///< by the part's numbering of vertices
};

struct CLayout {
    bool normalsJoint = false, texCoordsJoint = false;
};

/** The average text length of entries, estimated from a sample. */
template <std::size_t N>
std::size_t LengthOf(const std::vector<std::array<std::int64_t, N>>& entries, int decimals) {
    CPovText text;
    const std::size_t step = std::max<std::size_t>(1, entries.size() / 64);
    std::size_t count = 0;
    for (std::size_t i = 0; i < entries.size(); i += step, ++count)
        text.AppendFixedVector(entries[i], decimals);
    return count == 0 ? 0 : text.View().size() / count;
}

std::size_t DigitsOf(std::size_t number) {
    std::size_t digits = 1;
    for (; number >= 10; number /= 10) ++digits;
    return digits;
}

/** A part's vertices, and its lists in each possible layout. */
class CPartLists {
  public:
    CPartLists(const CPovMesh& mesh, const CPovPart& part) : m_mesh(mesh), m_part(part) {
        CNumbering used(mesh.positionOf.size());
        m_corners.reserve(part.faces.size());
        for (const CPovFace& face : part.faces) {
            // In reverse order, because POV-Ray's axes are left-handed. For three equal normals POV-Ray uses
            // the plane's normal, so the triangle's front must be on their side.
            const bool kept = part.normals && HasNormalsBehind(mesh, face);
            m_corners.push_back({used.Of(face.corner[0]), used.Of(face.corner[kept ? 1 : 2]),
                                 used.Of(face.corner[kept ? 2 : 1])});
        }
        m_vertices = used.Order();
        for (const CPovFace& face : part.faces) {
            if (m_textures.empty() || m_textures.back() != face.texture) m_textures.push_back(face.texture);
        }
        std::sort(m_textures.begin(), m_textures.end());
        m_textures.erase(std::unique(m_textures.begin(), m_textures.end()), m_textures.end());
        if (part.normals) m_normals = Unique({false, true, false});
        if (part.texCoords) m_texCoords = Unique({false, false, true});
        Choose();
    }

    void Write(CPovText& text) const;

  private:
    struct CWhich {
        bool position, normal, texCoord;
    };
    [[nodiscard]] CEntries Unique(CWhich which) const;
    [[nodiscard]] std::size_t IndexBytes(std::size_t entries) const {
        return m_corners.size() * (4 + 3 * DigitsOf(entries));
    }
    [[nodiscard]] std::uint32_t PlaceOf(std::uint32_t texture) const {
        const auto at = std::lower_bound(m_textures.begin(), m_textures.end(), texture);
        return static_cast<std::uint32_t>(at - m_textures.begin());
    }
    void Choose();
    void WriteList(CPovText& text, std::string_view name, const CEntries& from, std::size_t what) const;
    void WriteIndices(CPovText& text, std::string_view name, const CEntries& entries,
                      bool withTextures) const;

    const CPovMesh& m_mesh;
    const CPovPart& m_part;
    std::vector<std::uint32_t> m_textures;                ///< that the faces have, in order
    std::vector<std::uint32_t> m_vertices;                ///< prepared vertices that are used
    std::vector<std::array<std::uint32_t, 3>> m_corners;  ///< of the faces, places in m_vertices
    CEntries m_main, m_normals, m_texCoords;
    CLayout m_layout;
};

CEntries CPartLists::Unique(CWhich which) const {
    CEntries result;
    CHashIndex index;
    result.ofVertex.reserve(m_vertices.size());
    for (const std::uint32_t vertex : m_vertices) {
        const std::array<std::uint32_t, 3> entry{which.position ? m_mesh.positionOf[vertex] : 0,
                                                 which.normal ? m_mesh.normalOf[vertex] : 0,
                                                 which.texCoord ? m_mesh.texCoordOf[vertex] : 0};
        const std::uint64_t key = (static_cast<std::uint64_t>(entry[0]) << 32 | entry[1]) +
                                  static_cast<std::uint64_t>(entry[2]) * 0x9E3779B97F4A7C15u;
        const auto fresh = static_cast<std::uint32_t>(result.entries.size());
        const std::uint32_t found =
            index.FindOrAdd(key, fresh, [&](std::uint32_t i) { return result.entries[i] == entry; });
        if (found == fresh) result.entries.push_back(entry);
        result.ofVertex.push_back(found);
    }
    return result;
}

void CPartLists::Choose() {
    const std::size_t positionLength = LengthOf(m_mesh.positions, m_mesh.decimals);
    const std::size_t normalLength = LengthOf(m_mesh.normals, CPovMesh::kNormalDecimals);
    const std::size_t texCoordLength = LengthOf(m_mesh.texCoords, CPovMesh::kUvDecimals);
    std::size_t best = SIZE_MAX;
    for (const CLayout layout : {CLayout{false, false}, {true, false}, {false, true}, {true, true}}) {
        if ((layout.normalsJoint && !m_part.normals) || (layout.texCoordsJoint && !m_part.texCoords))
            continue;
        CEntries entries = Unique({true, layout.normalsJoint, layout.texCoordsJoint});
        const std::size_t count = entries.entries.size();
        std::size_t bytes = count * positionLength + IndexBytes(count);
        const auto add = [&](bool wanted, bool joint, const CEntries& own, std::size_t length) {
            if (!wanted) return;
            bytes += joint ? count * length : own.entries.size() * length + IndexBytes(own.entries.size());
        };
        add(m_part.normals, layout.normalsJoint, m_normals, normalLength);
        add(m_part.texCoords, layout.texCoordsJoint, m_texCoords, texCoordLength);
        if (bytes >= best) continue;
        best = bytes;
        m_layout = layout;
        m_main = std::move(entries);
    }
}

void CPartLists::WriteList(CPovText& text, std::string_view name, const CEntries& from,
                           std::size_t what) const {
    text << name << '{' << static_cast<std::uint32_t>(from.entries.size()) << ',';
    std::size_t inLine = 0;
    for (const std::array<std::uint32_t, 3>& entry : from.entries) {
        if (inLine++ % kEntriesPerLine == 0) text << '\n';
        const std::uint32_t i = entry[what];
        if (what == 0) text.AppendFixedVector(m_mesh.positions[i], m_mesh.decimals);
        if (what == 1) text.AppendFixedVector(m_mesh.normals[i], CPovMesh::kNormalDecimals);
        if (what == 2) text.AppendFixedVector(m_mesh.texCoords[i], CPovMesh::kUvDecimals);
    }
    text << "}\n";
}

void CPartLists::WriteIndices(CPovText& text, std::string_view name, const CEntries& entries,
                              bool withTextures) const {
    text << name << '{' << static_cast<std::uint32_t>(m_corners.size()) << ',';
    for (std::size_t i = 0; i < m_corners.size(); ++i) {
        if (i % kEntriesPerLine == 0) text << '\n';
        const auto& [a, b, c] = m_corners[i];
        text.AppendIndices(entries.ofVertex[a], entries.ofVertex[b], entries.ofVertex[c]);
        if (withTextures) text << ',' << PlaceOf(m_part.faces[i].texture);
    }
    text << "}\n";
}

void CPartLists::Write(CPovText& text) const {
    WriteList(text, "vertex_vectors", m_main, 0);
    if (m_part.normals) WriteList(text, "normal_vectors", m_layout.normalsJoint ? m_main : m_normals, 1);
    if (m_part.texCoords) WriteList(text, "uv_vectors", m_layout.texCoordsJoint ? m_main : m_texCoords, 2);
    const bool several = m_textures.size() > 1;
    if (several) {
        text << "texture_list{" << static_cast<std::uint32_t>(m_textures.size()) << ',';
        for (const std::uint32_t texture : m_textures) text << "texture{T" << texture << '}';
        text << "}\n";
    }
    WriteIndices(text, "face_indices", m_main, several);
    if (m_part.normals && !m_layout.normalsJoint) WriteIndices(text, "normal_indices", m_normals, false);
    if (m_part.texCoords && !m_layout.texCoordsJoint) WriteIndices(text, "uv_indices", m_texCoords, false);
    if (!several) text << "texture{T" << m_textures.front() << '}';
    if (m_part.unlit == kNoTexture) return;
    // POV-Ray requires an exterior texture in addition to the list if there is an interior one.
    if (several) text << "texture{T" << m_textures.front() << '}';
    text << "\n#if(HideBacks)interior_texture{T" << m_part.unlit << "}#end\n";
}

}  // namespace

void WritePovMesh2(CPovText& text, const CPovMesh& mesh, const CPovPart& part) {
    text << "mesh2{";
    CPartLists(mesh, part).Write(text);
}
