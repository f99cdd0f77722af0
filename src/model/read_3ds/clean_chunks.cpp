// SPDX-License-Identifier: MIT
#include "model/read_3ds/clean_chunks.h"

#include <lib3ds/chunk.h>

#include <algorithm>
#include <cmath>
#include <string_view>

#include "model/read_3ds/read_name.h"

namespace {
constexpr int kMaxDepth = 6;  // main settings or material, map, colour: four levels are in use

/** contents: f float, w 16 bits, d 32 bits, b byte, s string, e 11 bytes of text; then children
 * when hasChildren. */
struct CChunkRule {
    std::uint16_t id;
    std::string_view contents;
    bool hasChildren;
};

/** Sorted by id. After the 3D Studio File Format as lib3ds 1.3 reads it. */
constexpr CChunkRule kRules[] = {
    {LIB3DS_COLOR_F, "fff", false},
    {LIB3DS_COLOR_24, "bbb", false},
    {LIB3DS_LIN_COLOR_24, "bbb", false},
    {LIB3DS_LIN_COLOR_F, "fff", false},
    {LIB3DS_INT_PERCENTAGE, "w", false},
    {LIB3DS_FLOAT_PERCENTAGE, "f", false},
    {LIB3DS_MASTER_SCALE, "f", false},
    {LIB3DS_BIT_MAP, "s", false},
    {LIB3DS_USE_BIT_MAP, "", false},
    {LIB3DS_SOLID_BGND, "", true},
    {LIB3DS_USE_SOLID_BGND, "", false},
    {LIB3DS_V_GRADIENT, "f", true},
    {LIB3DS_USE_V_GRADIENT, "", false},
    {LIB3DS_LO_SHADOW_BIAS, "f", false},
    {LIB3DS_HI_SHADOW_BIAS, "f", false},
    {LIB3DS_SHADOW_MAP_SIZE, "w", false},
    {LIB3DS_SHADOW_SAMPLES, "w", false},
    {LIB3DS_SHADOW_RANGE, "d", false},
    {LIB3DS_SHADOW_FILTER, "f", false},
    {LIB3DS_RAY_BIAS, "f", false},
    {LIB3DS_O_CONSTS, "fff", false},
    {LIB3DS_AMBIENT_LIGHT, "", true},
    {LIB3DS_FOG, "ffff", true},
    {LIB3DS_USE_FOG, "", false},
    {LIB3DS_FOG_BGND, "", false},
    {LIB3DS_DISTANCE_CUE, "ffff", true},
    {LIB3DS_USE_DISTANCE_CUE, "", false},
    {LIB3DS_LAYER_FOG, "fffd", true},
    {LIB3DS_USE_LAYER_FOG, "", false},
    {LIB3DS_DCUE_BGND, "", false},
    {LIB3DS_DEFAULT_VIEW, "", true},
    {LIB3DS_VIEW_TOP, "ffff", false},
    {LIB3DS_VIEW_BOTTOM, "ffff", false},
    {LIB3DS_VIEW_LEFT, "ffff", false},
    {LIB3DS_VIEW_RIGHT, "ffff", false},
    {LIB3DS_VIEW_FRONT, "ffff", false},
    {LIB3DS_VIEW_BACK, "ffff", false},
    {LIB3DS_VIEW_USER, "fffffff", false},
    {LIB3DS_VIEW_CAMERA, "e", false},
    {LIB3DS_MESH_VERSION, "d", false},
    {LIB3DS_N_DIRECT_LIGHT, "fff", true},
    {LIB3DS_DL_SPOTLIGHT, "fffff", true},
    {LIB3DS_DL_OFF, "", false},
    {LIB3DS_DL_ATTENUATE, "", false},
    {LIB3DS_DL_RAYSHAD, "", false},
    {LIB3DS_DL_SHADOWED, "", false},
    {LIB3DS_DL_LOCAL_SHADOW2, "ffw", false},
    {LIB3DS_DL_SEE_CONE, "", false},
    {LIB3DS_DL_SPOT_RECTANGULAR, "", false},
    {LIB3DS_DL_SPOT_OVERSHOOT, "", false},
    {LIB3DS_DL_SPOT_PROJECTOR, "s", false},
    {LIB3DS_DL_SPOT_ROLL, "f", false},
    {LIB3DS_DL_SPOT_ASPECT, "f", false},
    {LIB3DS_DL_RAY_BIAS, "f", false},
    {LIB3DS_DL_INNER_RANGE, "f", false},
    {LIB3DS_DL_OUTER_RANGE, "f", false},
    {LIB3DS_DL_MULTIPLIER, "f", false},
    {LIB3DS_N_CAMERA, "ffffffff", true},
    {LIB3DS_CAM_SEE_CONE, "", false},
    {LIB3DS_CAM_RANGES, "ff", false},
    {LIB3DS_MAT_NAME, "s", false},
    {LIB3DS_MAT_AMBIENT, "", true},
    {LIB3DS_MAT_DIFFUSE, "", true},
    {LIB3DS_MAT_SPECULAR, "", true},
    {LIB3DS_MAT_SHININESS, "", true},
    {LIB3DS_MAT_SHIN2PCT, "", true},
    {LIB3DS_MAT_TRANSPARENCY, "", true},
    {LIB3DS_MAT_XPFALL, "", true},
    {LIB3DS_MAT_REFBLUR, "", true},
    {LIB3DS_MAT_SELF_ILLUM, "", false},
    {LIB3DS_MAT_TWO_SIDE, "", false},
    {LIB3DS_MAT_DECAL, "", false},
    {LIB3DS_MAT_ADDITIVE, "", false},
    {LIB3DS_MAT_SELF_ILPCT, "", true},
    {LIB3DS_MAT_WIRE, "", false},
    {LIB3DS_MAT_WIRE_SIZE, "f", false},
    {LIB3DS_MAT_FACEMAP, "", false},
    {LIB3DS_MAT_PHONGSOFT, "", false},
    {LIB3DS_MAT_WIREABS, "", false},
    {LIB3DS_MAT_SHADING, "w", false},
    {LIB3DS_MAT_TEXMAP, "", true},
    {LIB3DS_MAT_SPECMAP, "", true},
    {LIB3DS_MAT_OPACMAP, "", true},
    {LIB3DS_MAT_REFLMAP, "", true},
    {LIB3DS_MAT_BUMPMAP, "", true},
    {LIB3DS_MAT_USE_XPFALL, "", false},
    {LIB3DS_MAT_USE_REFBLUR, "", false},
    {LIB3DS_MAT_MAPNAME, "s", false},
    {LIB3DS_MAT_ACUBIC, "bbwdd", false},
    {LIB3DS_MAT_TEX2MAP, "", true},
    {LIB3DS_MAT_SHINMAP, "", true},
    {LIB3DS_MAT_SELFIMAP, "", true},
    {LIB3DS_MAT_TEXMASK, "", true},
    {LIB3DS_MAT_TEX2MASK, "", true},
    {LIB3DS_MAT_OPACMASK, "", true},
    {LIB3DS_MAT_BUMPMASK, "", true},
    {LIB3DS_MAT_SHINMASK, "", true},
    {LIB3DS_MAT_SPECMASK, "", true},
    {LIB3DS_MAT_SELFIMASK, "", true},
    {LIB3DS_MAT_REFLMASK, "", true},
    {LIB3DS_MAT_MAP_TILING, "w", false},
    {LIB3DS_MAT_MAP_TEXBLUR, "f", false},
    {LIB3DS_MAT_MAP_USCALE, "f", false},
    {LIB3DS_MAT_MAP_VSCALE, "f", false},
    {LIB3DS_MAT_MAP_UOFFSET, "f", false},
    {LIB3DS_MAT_MAP_VOFFSET, "f", false},
    {LIB3DS_MAT_MAP_ANG, "f", false},
    {LIB3DS_MAT_MAP_COL1, "bbb", false},
    {LIB3DS_MAT_MAP_COL2, "bbb", false},
    {LIB3DS_MAT_MAP_RCOL, "bbb", false},
    {LIB3DS_MAT_MAP_GCOL, "bbb", false},
    {LIB3DS_MAT_MAP_BCOL, "bbb", false},
    {LIB3DS_MAT_ENTRY, "", true},
};

const CChunkRule* FindRule(std::uint16_t id) {
    const auto* found =
        std::find_if(std::begin(kRules), std::end(kRules), [id](const auto& r) { return r.id == id; });
    return found == std::end(kRules) ? nullptr : found;
}

template <class T>
void Append(std::vector<std::byte>& out, T value) {
    const auto* begin = reinterpret_cast<const std::byte*>(&value);
    out.insert(out.end(), begin, begin + sizeof(T));
}

void AppendString(CByteCursor& in, std::vector<std::byte>& out, CNoteList& notes) {
    const std::string text = ReadName(in, notes);
    const auto* begin = reinterpret_cast<const std::byte*>(text.c_str());
    out.insert(out.end(), begin, begin + text.size() + 1);
}

void AppendFloat(CByteCursor& in, std::vector<std::byte>& out, CNoteList& notes) {
    float value = in.Read<float>();
    if (!std::isfinite(value)) {
        notes.Repaired("A number that is not finite was set to 0");
        value = 0;
    }
    Append(out, value);
}

void AppendContents(CByteCursor& in, std::string_view contents, std::vector<std::byte>& out,
                    CNoteList& notes) {
    for (const char kind : contents) {
        switch (kind) {
            case 'f':
                AppendFloat(in, out, notes);
                break;
            case 'w':
                Append(out, in.Read<std::uint16_t>());
                break;
            case 'd':
                Append(out, in.Read<std::uint32_t>());
                break;
            case 'b':
                Append(out, in.Read<std::uint8_t>());
                break;
            case 's':
                AppendString(in, out, notes);
                break;
            case 'e':  // a camera's name: lib3ds reads 11 bytes whatever the file holds
                for (int i = 0; i < 10; ++i)
                    Append(out, in.Left() > 0 ? in.Read<std::uint8_t>() : std::uint8_t{0});
                Append(out, std::uint8_t{0});
                break;
            default:
                break;
        }
    }
}

/** Writes a header whose size is filled in when the chunk is complete. */
class CChunkFrame {
  public:
    CChunkFrame(std::vector<std::byte>& out, std::uint16_t id) : m_out(out), m_start(out.size()) {
        Append(out, id);
        Append(out, std::uint32_t{0});
    }
    void Close() {
        const auto size = static_cast<std::uint32_t>(m_out.size() - m_start);
        std::memcpy(m_out.data() + m_start + 2, &size, sizeof(size));
    }
    void Drop() { m_out.resize(m_start); }

  private:
    std::vector<std::byte>& m_out;
    std::size_t m_start;
};

/** Writes chunks that come out as another kind. True when the chunk was one of them. */
bool CopyConverted(CByteCursor in, std::uint16_t id, std::vector<std::byte>& out) {
    const bool byteColor = id == LIB3DS_COLOR_24 || id == LIB3DS_LIN_COLOR_24;
    if (byteColor && in.Left() >= 3) {
        CChunkFrame frame(out, id == LIB3DS_COLOR_24 ? LIB3DS_COLOR_F : LIB3DS_LIN_COLOR_F);
        for (int i = 0; i < 3; ++i) Append(out, static_cast<float>(in.Read<std::uint8_t>()) / 255.0f);
        frame.Close();
        return true;
    }
    if (id == LIB3DS_FLOAT_PERCENTAGE && in.Left() >= 4) {
        const float value = in.Read<float>();
        const float percent =
            std::isfinite(value) ? std::clamp(value <= 1.0f ? value * 100.0f : value, 0.0f, 100.0f) : 0;
        CChunkFrame frame(out, LIB3DS_INT_PERCENTAGE);
        Append(out, static_cast<std::uint16_t>(std::lround(percent)));
        frame.Close();
        return true;
    }
    if (id == LIB3DS_DL_ATTENUATE) {  // an empty flag in files, a number to lib3ds
        CChunkFrame frame(out, id);
        Append(out, 1.0f);
        frame.Close();
        return true;
    }
    return false;
}

bool IsMap(std::uint16_t id) {
    switch (id) {
        case LIB3DS_MAT_TEXMAP:
        case LIB3DS_MAT_TEX2MAP:
        case LIB3DS_MAT_OPACMAP:
        case LIB3DS_MAT_BUMPMAP:
        case LIB3DS_MAT_SPECMAP:
        case LIB3DS_MAT_SHINMAP:
        case LIB3DS_MAT_SELFIMAP:
        case LIB3DS_MAT_REFLMAP:
        case LIB3DS_MAT_TEXMASK:
        case LIB3DS_MAT_TEX2MASK:
        case LIB3DS_MAT_OPACMASK:
        case LIB3DS_MAT_BUMPMASK:
        case LIB3DS_MAT_SPECMASK:
        case LIB3DS_MAT_SHINMASK:
        case LIB3DS_MAT_SELFIMASK:
        case LIB3DS_MAT_REFLMASK:
            return true;
        default:
            return false;
    }
}

void AppendTiled(std::vector<std::byte>& out) {
    CChunkFrame frame(out, LIB3DS_MAT_MAP_TILING);
    Append(out, std::uint16_t{0});
    frame.Close();
}

/** lib3ds reads the gradient's colours into arrays of three, unchecked, and takes the linear ones
 * if there are any. */
class CGradientColors {
  public:
    /** False for a colour that is one too many. */
    bool Admit(std::uint16_t id) {
        const bool linear = id == LIB3DS_LIN_COLOR_F || id == LIB3DS_LIN_COLOR_24;
        return ++(linear ? m_linear : m_plain) <= 3;
    }
    [[nodiscard]] bool IsComplete() const { return m_linear > 0 ? m_linear >= 3 : m_plain >= 3; }

  private:
    int m_plain = 0, m_linear = 0;
};

void Copy(std::span<const std::byte> bytes, const C3dsChunk& chunk, int depth, std::vector<std::byte>& out,
          CNoteList& notes);

/** False when the children leave the chunk unusable. */
bool CopyChildren(std::span<const std::byte> bytes, const C3dsChunk& chunk, std::size_t begin, int depth,
                  std::vector<std::byte>& out, CNoteList& notes) {
    CChunkWalker children(bytes, begin, chunk.end);
    bool hasTiling = false;
    CGradientColors gradient;
    for (C3dsChunk child; children.Next(child);) {
        hasTiling |= child.id == LIB3DS_MAT_MAP_TILING;
        if (chunk.id == LIB3DS_V_GRADIENT && !gradient.Admit(child.id)) continue;
        Copy(bytes, child, depth + 1, out, notes);
    }
    if (children.End() != CChunkWalker::EEnd::Clean) notes.Repaired("A chunk does not fit into its parent");
    if (IsMap(chunk.id) && !hasTiling) AppendTiled(out);
    return chunk.id != LIB3DS_V_GRADIENT || gradient.IsComplete();
}

void Copy(std::span<const std::byte> bytes, const C3dsChunk& chunk, int depth, std::vector<std::byte>& out,
          CNoteList& notes) {
    CByteCursor in(bytes, chunk.begin, chunk.end);
    const CChunkRule* rule = FindRule(chunk.id);
    if (!rule || depth > kMaxDepth || CopyConverted(in, chunk.id, out)) return;

    CChunkFrame frame(out, chunk.id);
    AppendContents(in, rule->contents, out, notes);
    const bool complete = !in.RanOut() || rule->contents == "s";
    if (!complete) notes.Repaired("A chunk that is too short was left out");
    if (!complete || (rule->hasChildren && !CopyChildren(bytes, chunk, in.Position(), depth, out, notes))) {
        frame.Drop();
        return;
    }
    frame.Close();
}
}  // namespace

void CopyCleanChunk(std::span<const std::byte> bytes, const C3dsChunk& chunk, std::vector<std::byte>& out,
                    CNoteList& notes) {
    Copy(bytes, chunk, 0, out, notes);
}

bool IsCleanableChunk(std::uint16_t id) {
    return FindRule(id) != nullptr;
}
