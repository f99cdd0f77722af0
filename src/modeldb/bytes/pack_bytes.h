// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/CResult.h"
#include "modeldb/bytes/byte_stream.h"

/** How bytes are kept. The numbers stand in stores and on the wire. */
enum class EBlobCodec : std::uint8_t {
    Plain = 0,  ///< as they are
    Zstd = 1,   ///< one zstd frame
};

/** Packs bytes that come in pieces and hands on what is to be kept. Level 3: 4 to 6 times smaller for 3DS files. What is
 * packed already (JPEG, PNG, zip), or does not get smaller by a twentieth at its beginning, stays as it is. */
class CBytePacker {
  public:
    /** kept must outlive this object. */
    explicit CBytePacker(CByteSink& kept);
    ~CBytePacker();
    CBytePacker(CBytePacker&&) noexcept;

    [[nodiscard]] CStatus Add(std::span<const std::byte> piece);
    /** Call it once, after the last piece; how the bytes were packed. */
    [[nodiscard]] CResult<EBlobCodec> Finish();

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};

/** Unpacks kept bytes that come in pieces. Nothing of them is trusted: at most `size` bytes are handed on, and the memory
 * that a frame asks for is bounded. */
class CByteUnpacker final : public CByteSink {
  public:
    /** size: what the bytes must unpack to. plain must outlive this object. */
    CByteUnpacker(EBlobCodec codec, std::uint64_t size, CByteSink& plain);
    ~CByteUnpacker() override;

    /** BadFormat: damaged, or more than size. */
    [[nodiscard]] CStatus Take(std::span<const std::byte> piece) override;
    /** Call it after the last piece. BadFormat: the bytes end too early. */
    [[nodiscard]] CStatus Finish() const;

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
