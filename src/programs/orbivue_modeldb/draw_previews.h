// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

#include "base/CResult.h"

struct CModelDbOptions;

/** Draws previews of models in processes of their own, one for each core at once, and says how many there are. What cannot
 * be drawn stays without. A failure of the store ends it. */
[[nodiscard]] CStatus DrawPreviews(const CModelDbOptions& options, std::span<const std::uint32_t> keys);
