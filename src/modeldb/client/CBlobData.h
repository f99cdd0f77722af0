// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <utility>

/** A buffer that goes from hand to hand, made by new[]. Whoever holds one that is not empty owns it: the destructor
 * frees it. Both fields may be set and taken; who takes a buffer sets both to zero (Release does). */
struct CBlobData {
    unsigned char* data = nullptr;
    std::uint32_t size = 0;

    CBlobData() = default;
    /** Takes the buffer over. */
    CBlobData(unsigned char* bytes, std::uint32_t count) : data(bytes), size(count) {}
    CBlobData(CBlobData&& other) noexcept
        : data(std::exchange(other.data, nullptr)), size(std::exchange(other.size, 0U)) {}
    CBlobData& operator=(CBlobData&& other) noexcept {
        if (this != &other) {
            Clear();
            data = std::exchange(other.data, nullptr);
            size = std::exchange(other.size, 0U);
        }
        return *this;
    }
    ~CBlobData() { Clear(); }

    /** Frees the buffer. */
    void Clear() {
        delete[] std::exchange(data, nullptr);
        size = 0;
    }
    /** Gives the buffer away: the caller frees it by delete[]. */
    [[nodiscard]] unsigned char* Release() {
        size = 0;
        return std::exchange(data, nullptr);
    }
    [[nodiscard]] std::span<const std::byte> Bytes() const { return std::as_bytes(std::span(data, size)); }
};
