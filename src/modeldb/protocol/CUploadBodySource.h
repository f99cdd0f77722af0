// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "modeldb/bytes/byte_stream.h"
#include "modeldb/protocol/wire_records.h"

/** The body of an upload, for sending: see CUploadBodyReader. */
class CUploadBodySource final : public CByteSource {
  public:
    struct CPicture {
        std::string name;
        std::span<const std::byte> bytes;
    };
    /** head: its texts; sizes, hashes and textures are made here. The bytes belong to the caller and must outlive
     * this object. BadArgument: a text is too long, empty though it must not, or not UTF-8; TooLarge: there are
     * too many textures, or their names do not fit into a head. */
    [[nodiscard]] static CResult<CUploadBodySource> Make(CUploadHead head, std::span<const std::byte> file,
                                                         std::span<const CPicture> textures);

    /** Of the whole body. */
    [[nodiscard]] std::uint64_t Size() const { return m_size; }
    [[nodiscard]] CResult<std::size_t> Give(std::span<std::byte> room) override;
    /** The next bytes are the first ones again: for a request that must be sent anew. */
    void Rewind() { m_sent = 0; }

  private:
    CUploadBodySource() = default;

    std::vector<std::byte> m_head;                   ///< all before the file
    std::vector<std::span<const std::byte>> m_rest;  ///< file and textures
    std::uint64_t m_size = 0, m_sent = 0;
};
