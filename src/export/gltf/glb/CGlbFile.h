// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <vector>

#include "base/CResult.h"

class CJobProgress;
class CJsonText;

/** Cancelled when progress, which may be null, was. */
[[nodiscard]] CStatus NotCancelled(const CJobProgress* progress);

/** What the bytes of a stream are, which decides how they are packed. */
enum class EGlbStream : std::uint8_t {
    Positions,       ///< three floats; packed: three 16-bit numbers and padding
    Normals,         ///< three floats; packed: octahedral, 8 bits
    TexCoords,       ///< two floats; packed: with a common exponent
    Indices16,       ///< of triangles
    Indices32,       ///< of triangles
    Scalars,         ///< one float
    Vectors3,        ///< three floats
    Vectors4,        ///< four floats
    PositionDeltas,  ///< three floats; packed: three signed 16-bit numbers and padding
    NormalDeltas     ///< three floats; packed: with a common exponent
};

/** Where data lies: a view and the first byte in it. */
struct CGlbPlace {
    int view = 0;
    std::size_t offset = 0;
};

/** One glTF accessor. */
struct CGlbAccessor {
    enum EComponent : int { kByte = 5120, kShort = 5122, kUShort = 5123, kUInt = 5125, kFloat = 5126 };

    CGlbPlace place;
    EComponent component = kFloat;
    bool normalized = false;
    std::size_t count = 0;
    std::string_view type = "VEC3";  ///< a literal
    std::vector<double> min, max;    ///< empty, or one for each component
};

/** A binary glTF file (GLB) while it is put together: the binary part with its views and accessors; the caller brings
 * the rest of the JSON. Data of one kind lies together in few views, which are packed by EXT_meshopt_compression when
 * the file is. */
class CGlbFile {
  public:
    explicit CGlbFile(bool packs) : m_packs(packs) { m_open.fill(-1); }

    [[nodiscard]] bool Packs() const { return m_packs; }
    /** Bytes of one element of a stream, which the data must have. */
    [[nodiscard]] std::size_t StrideOf(EGlbStream stream) const;
    /** Appends data. In a packed file Normals, TexCoords and NormalDeltas are as meshoptimizer's filters give them. */
    CGlbPlace Append(EGlbStream stream, std::span<const std::byte> data);
    /** Returns the accessor's number. */
    int AddAccessor(CGlbAccessor accessor);
    /** Appends the view of a picture, which is not packed, and returns its number. */
    int AddPicture(std::vector<std::byte> bytes);

    /** Declares an extension, a literal; any number of times. */
    void UseExtension(std::string_view name, bool isRequired = false) { m_extensions[name] |= isRequired; }

    /** The whole file; this object is empty then. json is the text of an object that lacks "buffers", "bufferViews",
     * "accessors", the lists of extensions and its closing brace. TooLarge: over 4 GB, which the format cannot say. */
    [[nodiscard]] CResult<std::vector<std::byte>> Finish(CJsonText json, CJobProgress* progress);

  private:
    struct CView {
        EGlbStream stream = EGlbStream::Positions;
        bool isPicture = false;
        std::vector<std::byte> bytes;
        std::vector<std::byte> packed;
    };
    static constexpr std::size_t kStreams = 10;

    [[nodiscard]] bool IsPacked(const CView& view) const { return m_packs && !view.isPicture; }
    [[nodiscard]] const std::vector<std::byte>& BytesInFile(const CView& view) const {
        return IsPacked(view) ? view.packed : view.bytes;
    }
    void Pack(CView& view) const;
    void WriteView(CJsonText& json, const CView& view, std::uint64_t inFile, std::uint64_t unpacked) const;
    void WritePacking(CJsonText& json, const CView& view, std::uint64_t inFile) const;
    /** Returns the number of bytes of the binary part. */
    std::uint64_t WriteViews(CJsonText& json) const;
    void WriteAccessors(CJsonText& json) const;
    void WriteExtensions(CJsonText& json) const;
    [[nodiscard]] CResult<std::vector<std::byte>> Join(std::string_view json, std::uint64_t binaryBytes);

    bool m_packs;
    std::vector<CView> m_views;
    std::vector<CGlbAccessor> m_accessors;
    std::map<std::string_view, bool> m_extensions;  ///< with whether they are required
    std::array<int, kStreams> m_open{};             ///< the view that grows; -1: none
};
