// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/math/CVec.h"

namespace tinyobj {
struct callback_t;
struct index_t;
}  // namespace tinyobj

/** One part of an OBJ text as tinyobjloader calls it out. Parts are read on different threads, so what
 * depends on the parts before is left open: indices counted back from the end are kept as such (see Encode),
 * and a part does not know the names in force at its beginning. */
class CObjCollector {
  public:
    enum class EChange : std::uint32_t { Object, Group, Material, Smoothing };
    static constexpr std::size_t kChangeKinds = 4;
    /** From this face on something else is in force. value: an index into names, or the smoothing group. */
    struct CEvent {
        std::uint32_t face = 0;
        EChange kind = EChange::Object;
        std::uint32_t value = 0;
    };

    static constexpr std::int32_t kNone = INT32_MIN;     ///< corner without such an index
    static constexpr std::int32_t kInvalid = INT32_MAX;  ///< an index that nothing can have

    /** Reads the text to its end. */
    void Read(std::string_view text);

    /** An index as the file has it, where `count` entries were read in this part so far. */
    [[nodiscard]] static std::int32_t Encode(int index, std::size_t count);
    /** The index from 0 for an encoded one, where `before` entries stand in earlier parts;
     * not range-checked. */
    [[nodiscard]] static std::int64_t Decode(std::int32_t encoded, std::size_t before);

    std::vector<CVec3> positions;
    std::vector<CVec2> texCoords;
    std::vector<CVec3> normals;
    std::vector<std::int32_t> cornerPositions, cornerTexCoords, cornerNormals;
    std::vector<std::uint32_t> faceEnds;  ///< points and pieces of lines too, as faces of one and two corners
    std::size_t elements = 0;             ///< points and pieces of lines among the faces
    std::size_t triangles = 0;            ///< that the other faces give
    std::vector<CEvent> events;
    std::vector<std::string> names;
    std::vector<std::string> libraries;
    std::size_t droppedLines = 0;

  private:
    void AddFace(const tinyobj::index_t* corners, std::size_t count);
    void AddElements(const tinyobj::index_t* corners, std::size_t count, std::size_t cornersEach);
    void AddPosition(const tinyobj::index_t& corner);
    void ApplyPending();
    void AddName(EChange kind, std::string_view name);
    void SetPending(EChange kind, std::uint32_t value);
    [[nodiscard]] static tinyobj::callback_t Callbacks();

    std::unordered_map<std::string, std::uint32_t> m_nameNumbers;
    std::array<std::int64_t, kChangeKinds> m_pending{-1, -1, -1, -1};
    bool m_anyPending = false;
};
