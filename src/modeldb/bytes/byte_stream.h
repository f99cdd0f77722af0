// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "base/CResult.h"

/** Takes bytes in pieces, in their order. A failure ends the transfer and is what its caller gets. */
class CByteSink {
  public:
    virtual ~CByteSink() = default;
    /** The piece is the caller's and is valid during the call alone. */
    [[nodiscard]] virtual CStatus Take(std::span<const std::byte> piece) = 0;
};

/** Gives bytes in pieces, in their order. */
class CByteSource {
  public:
    virtual ~CByteSource() = default;
    /** Fills the beginning of room; how many bytes that were, 0 only at the end. */
    [[nodiscard]] virtual CResult<std::size_t> Give(std::span<std::byte> room) = 0;
};

/** Gathers what it takes in memory; more than mostBytes is TooLarge. */
class CMemorySink final : public CByteSink {
  public:
    explicit CMemorySink(std::size_t mostBytes) : m_mostBytes(mostBytes) {}
    [[nodiscard]] CStatus Take(std::span<const std::byte> piece) override {
        if (piece.size() > m_mostBytes - bytes.size())
            return CError{EErrorCode::TooLarge, "more bytes than expected", {}};
        bytes.insert(bytes.end(), piece.begin(), piece.end());
        return CDone{};
    }

    std::vector<std::byte> bytes;

  private:
    std::size_t m_mostBytes;
};
