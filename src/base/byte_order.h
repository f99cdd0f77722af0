// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/** Reads unsigned integers at any offset of a file's bytes: Le little-endian, Be big-endian. Bytes beyond the
 * end read as 0. */
namespace byte_order {

inline std::uint32_t At8(std::span<const std::byte> bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<std::uint32_t>(bytes[at]) : 0;
}
inline std::uint32_t Le16(std::span<const std::byte> bytes, std::size_t at) {
    return At8(bytes, at) | At8(bytes, at + 1) << 8;
}
inline std::uint32_t Le32(std::span<const std::byte> bytes, std::size_t at) {
    return Le16(bytes, at) | Le16(bytes, at + 2) << 16;
}
inline std::uint32_t Be16(std::span<const std::byte> bytes, std::size_t at) {
    return At8(bytes, at) << 8 | At8(bytes, at + 1);
}
inline std::uint32_t Be32(std::span<const std::byte> bytes, std::size_t at) {
    return Be16(bytes, at) << 16 | Be16(bytes, at + 2);
}

}  // namespace byte_order
