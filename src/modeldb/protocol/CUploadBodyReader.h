// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "base/CResult.h"
#include "modeldb/bytes/byte_stream.h"
#include "modeldb/protocol/wire_records.h"

/** Takes what an upload's body holds. Each failure ends the reading and is what its caller gets. */
class CUploadTaker {
  public:
    /** Comes first. All of it was checked but the bytes that follow. */
    [[nodiscard]] virtual CStatus OnHead(const CUploadHead& head) = 0;
    /** Comes before the bytes of each part, also of one without bytes: 0 is the file, from 1 on the textures. The sink must
     * live until OnPartEnd. */
    [[nodiscard]] virtual CResult<CByteSink*> OnPart(std::size_t number) = 0;
    /** Comes after them, when their SHA-256 was right. */
    [[nodiscard]] virtual CStatus OnPartEnd(std::size_t number) = 0;

  protected:
    ~CUploadTaker() = default;
};

/** Reads the body of an upload, which comes in pieces:
 *
 *     4 bytes   "OrbU"
 *     1 byte    1, the version of this form
 *     4 bytes   length of the head, little-endian, at most wire_limits::kHeadBytes
 *     ...       the head, JSON (CUploadHead)
 *     ...       the bytes of the file, then of each texture, one after the other
 *
 * Nothing of it is trusted. What reaches the taker has the sizes that the head names, and they fill the body exactly; what it
 * kept of a body must be thrown away unless Finish succeeds. */
class CUploadBodyReader final : public CByteSink {
  public:
    struct CLimits {
        std::uint64_t bodyBytes = 0;  ///< the length that the request announced: exactly so many bytes
        std::size_t textures = 0;     ///< the most of one model
    };
    /** taker must outlive this object. */
    CUploadBodyReader(const CLimits& limits, CUploadTaker& taker);
    ~CUploadBodyReader() override;

    /** BadFormat: no upload, or sizes or hashes are wrong; TooLarge: over a limit; else the taker's failure. After a failure
     * it takes nothing any more and gives the same failure again. */
    [[nodiscard]] CStatus Take(std::span<const std::byte> piece) override;
    /** Call it after the last piece. BadFormat: the body ends too early. */
    [[nodiscard]] CStatus Finish();

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
