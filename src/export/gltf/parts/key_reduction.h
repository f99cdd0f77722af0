// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/** Which samples of an animation must be kept as keys so that what lies between them, interpolated, is no further from
 * the samples than a tolerance. In linear time; the first and the last sample are kept, or one of samples that are all
 * alike. The samples are evenly spaced but for the last. */
namespace key_reduction {

/** Of samples with so many values each, where `times` are those of the samples. */
[[nodiscard]] std::vector<std::uint32_t> KeptValues(std::span<const float> times,
                                                    std::span<const float> values, std::size_t dimensions,
                                                    float tolerance);
/** Of unit quaternions (x, y, z, w) that readers interpolate by turning evenly (slerp). The tolerance is an angle in
 * radians. Quaternions that mean the same turn as their neighbour from the other side are negated. */
[[nodiscard]] std::vector<std::uint32_t> KeptTurns(std::span<const float> times, std::span<float> turns,
                                                   float tolerance);

}  // namespace key_reduction
