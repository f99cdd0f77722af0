// SPDX-License-Identifier: MIT
#include "view/pick_records.h"

#include <algorithm>
#include <cstddef>

std::optional<int> NearestName(int hits, std::span<const unsigned> words) {
    constexpr std::size_t kWords = 4, kLeastDepth = 1, kName = 3;
    if (hits < 1 || words.size() < kWords) return std::nullopt;
    const std::size_t count = std::min(static_cast<std::size_t>(hits), words.size() / kWords);
    std::size_t best = 0;
    for (std::size_t i = 1; i < count; ++i)
        if (words[i * kWords + kLeastDepth] < words[best * kWords + kLeastDepth]) best = i;
    return static_cast<int>(words[best * kWords + kName]);
}
