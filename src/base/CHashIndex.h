// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/hash_secret.h"

/** A hash table (open addressing) of numbers, for instance of indices into a list of the caller's. Grows as
 * needed. Hashes are mixed with a secret of the process, so that keys chosen by a hostile file cannot make
 * it slow. */
class CHashIndex {
  public:
    CHashIndex() { Clear(); }
    /** Has room for so many numbers from the beginning. */
    explicit CHashIndex(std::size_t expected)
        : m_slots(expected * 2 < kFirstSize ? kFirstSize : std::bit_ceil(expected * 2 + 1)) {}

    void Clear() {
        m_slots.assign(kFirstSize, {});
        m_used = 0;
    }

    /** Returns the number stored under `key`, a hash, for which isEqual(number) holds. Where there is none,
     * stores `fresh`, which must not be kNone, and returns it. */
    template <class IsEqual>
    std::uint32_t FindOrAdd(std::uint64_t key, std::uint32_t fresh, IsEqual isEqual) {
        if (m_used * 2 >= m_slots.size()) Grow();
        const std::uint32_t hash = Mixed(key);
        for (std::size_t at = hash;; ++at) {
            CSlot& slot = m_slots[at & (m_slots.size() - 1)];
            if (slot.number == kFree) {
                slot = {hash, fresh};
                ++m_used;
                return fresh;
            }
            if (slot.hash == hash && isEqual(slot.number)) return slot.number;
        }
    }

    static constexpr std::uint32_t kNone = UINT32_MAX;

    /** The number stored under `key` for which isEqual(number) holds, or kNone. */
    template <class IsEqual>
    [[nodiscard]] std::uint32_t Find(std::uint64_t key, IsEqual isEqual) const {
        const std::uint32_t hash = Mixed(key);
        for (std::size_t at = hash;; ++at) {
            const CSlot& slot = m_slots[at & (m_slots.size() - 1)];
            if (slot.number == kFree || (slot.hash == hash && isEqual(slot.number))) return slot.number;
        }
    }

  private:
    static constexpr std::size_t kFirstSize = 64;
    static constexpr std::uint32_t kFree = kNone;
    struct CSlot {
        std::uint32_t hash = 0, number = kFree;
    };

    /** Every bit of the key moves every bit of the hash, as in the finalizer of MurmurHash3. */
    static std::uint32_t Mixed(std::uint64_t key) {
        key = (key ^ (key >> 33)) * kHashSecret[0];
        key = (key ^ (key >> 33)) * kHashSecret[1];
        return static_cast<std::uint32_t>(key >> 32);
    }

    void Grow() {
        std::vector<CSlot> old(m_slots.size() * 4);
        old.swap(m_slots);
        for (const CSlot& slot : old) {
            if (slot.number == kFree) continue;
            std::size_t at = slot.hash;
            while (m_slots[at & (m_slots.size() - 1)].number != kFree) ++at;
            m_slots[at & (m_slots.size() - 1)] = slot;
        }
    }

    std::vector<CSlot> m_slots;
    std::size_t m_used = 0;
};
