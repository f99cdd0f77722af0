// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "base/hash_secret.h"

/** A hash of names that a file may choose: without the secret of the process nobody can make names collide.
 * The standard library's own hash of strings has no secret. */
struct CNameHash {
    using is_transparent = void;

    std::size_t operator()(std::string_view name) const {
        std::uint64_t hash = kHashSecret[2] ^ name.size();
        for (; name.size() > 16; name.remove_prefix(16)) hash = Mixed(hash, name);
        return static_cast<std::size_t>(Mixed(hash, name));
    }

  private:
    /** Takes in the first 16 bytes. A product of two secret numbers, folded, as in wyhash. */
    static std::uint64_t Mixed(std::uint64_t hash, std::string_view name) {
        std::uint64_t words[2] = {};
        std::memcpy(words, name.data(), name.size() < 16 ? name.size() : 16);
        __extension__ using CProduct = unsigned __int128;
        const CProduct product =
            static_cast<CProduct>(words[0] ^ kHashSecret[0]) * (words[1] ^ hash ^ kHashSecret[1]);
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    }
};

/** Tables by names of a file. */
template <class T>
using CNameMap = std::unordered_map<std::string, T, CNameHash, std::equal_to<>>;
using CNameSet = std::unordered_set<std::string, CNameHash, std::equal_to<>>;
