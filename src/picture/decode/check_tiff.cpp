// SPDX-License-Identifier: MIT
#include "picture/decode/check_tiff.h"

#include "base/byte_order.h"

namespace picture_decoders {
namespace {

/** Reads numbers in the byte order that the file begins with. */
class CTiffNumbers {
  public:
    explicit CTiffNumbers(CBytes bytes) : m_bytes(bytes), m_isLittle(byte_order::At8(bytes, 0) == 'I') {}
    [[nodiscard]] std::uint64_t U16(std::size_t at) const {
        return m_isLittle ? byte_order::Le16(m_bytes, at) : byte_order::Be16(m_bytes, at);
    }
    [[nodiscard]] std::uint64_t U32(std::size_t at) const {
        return m_isLittle ? byte_order::Le32(m_bytes, at) : byte_order::Be32(m_bytes, at);
    }

  private:
    CBytes m_bytes;
    bool m_isLittle;
};

/** Of a value of that type; those of unknown types count as the longest. */
std::uint64_t ValueBytes(std::uint64_t type) {
    constexpr std::uint64_t kBytes[] = {8, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    return type < std::size(kBytes) ? kBytes[type] : 8;
}

}  // namespace

CStatus CheckTiffDirectory(CBytes bytes) {
    constexpr std::uint64_t kMostEntries = 200, kEntry = 12, kInEntry = 4;
    const CTiffNumbers numbers(bytes);
    const std::uint64_t directory = numbers.U32(4), count = numbers.U16(directory);
    if (count == 0 || count > kMostEntries || directory + 2 + count * kEntry > bytes.size())
        return HeaderIsDamaged();
    std::uint64_t total = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t entry = directory + 2 + i * kEntry;
        const std::uint64_t size = ValueBytes(numbers.U16(entry + 2)) * numbers.U32(entry + 4);
        if (size > kInEntry && numbers.U32(entry + 8) + size > bytes.size()) return HeaderIsDamaged();
        total += size;
    }
    return total > bytes.size() ? CStatus(HeaderIsDamaged()) : CDone{};
}

}  // namespace picture_decoders
