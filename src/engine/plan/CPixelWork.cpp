// SPDX-License-Identifier: MIT
#include "engine/plan/CPixelWork.h"

#include <algorithm>

namespace {

// Measured with a thousand triangles one behind another, in nanoseconds a pixel.
constexpr double kShading = 7.5, kMap = 12, kBlending = 1;
/** More for several samples; and the least with these, as of what is hidden, too. */
constexpr double kSamples = 4.5, kLeastOfSamples = 10;

}  // namespace

void CPixelWork::Add(double pixels, const CPixelUse& use) {
    const double one = kShading + kMap * use.maps + (use.blends ? kBlending : 0);
    m_one += pixels * use.passes * one;
    m_several += pixels * use.passes * std::max(one + kSamples, kLeastOfSamples);
}

void CPixelWork::Add(const CPixelWork& other) {
    m_one += other.m_one;
    m_several += other.m_several;
}

int CPixelWork::ReductionFor(double pixels, int samples) const {
    const double most = kMostNs * std::max(1.0, pixels / kUsualPixels);
    if ((samples > 1 ? m_several : m_one) <= most) return 0;
    int divisor = 1;
    while (divisor < kMostReduction && m_one > most * divisor * divisor) divisor *= 2;
    return samples > 1 ? divisor : std::max(divisor, 2);
}
