// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>

/** Words in the selection buffer of a pick. */
inline constexpr int kSelectionWords = 512;

/** The name in the nearest of the hit records that OpenGL's selection mode left in a buffer. Each record is
 * four words: name count, least depth, largest depth, name. Of records equally near the first one wins.
 *
 * hits: the result of glRenderMode. Below 1 there is no name (-1: the buffer overflowed). */
[[nodiscard]] std::optional<int> NearestName(int hits, std::span<const unsigned> words);
