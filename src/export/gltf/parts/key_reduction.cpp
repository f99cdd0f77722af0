// SPDX-License-Identifier: MIT
#include "export/gltf/parts/key_reduction.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace key_reduction {
namespace {

/** The slopes of the lines from a key that pass all samples behind it within the tolerance ("swing door"). */
class CDoor {
  public:
    explicit CDoor(std::size_t dimensions) : m_low(dimensions), m_high(dimensions) { Open(); }

    void Open() {
        std::fill(m_low.begin(), m_low.end(), -std::numeric_limits<double>::infinity());
        std::fill(m_high.begin(), m_high.end(), std::numeric_limits<double>::infinity());
    }
    /** True where a line to a sample, which is so much later and differs by that, passes those before. */
    [[nodiscard]] bool Passes(double later, std::span<const double> difference) const {
        for (std::size_t i = 0; i < m_low.size(); ++i) {
            const double slope = difference[i] / later;
            if (slope < m_low[i] || slope > m_high[i]) return false;
        }
        return true;
    }
    void Add(double later, std::span<const double> difference, double tolerance) {
        for (std::size_t i = 0; i < m_low.size(); ++i) {
            m_low[i] = std::max(m_low[i], (difference[i] - tolerance) / later);
            m_high[i] = std::min(m_high[i], (difference[i] + tolerance) / later);
        }
    }

  private:
    std::vector<double> m_low, m_high;
};

/** differ(from, to, out) gives by how much sample `to` differs from sample `from`. */
template <class Differ>
std::vector<std::uint32_t> Kept(std::span<const float> times, std::size_t dimensions, double tolerance,
                                const Differ& differ) {
    const auto count = static_cast<std::uint32_t>(times.size());
    std::vector<std::uint32_t> kept{0};
    std::vector<double> difference(dimensions);
    CDoor door(dimensions);
    const auto later = [&](std::uint32_t at) {
        return static_cast<double>(times[at]) - static_cast<double>(times[kept.back()]);
    };
    bool isStill = true;
    for (std::uint32_t i = 1; i < count; ++i) {
        bool canReach = differ(kept.back(), i, difference);
        if (!canReach || !door.Passes(later(i), difference)) {
            if (i - 1 != kept.back()) kept.push_back(i - 1);
            door.Open();
            (void)differ(kept.back(), i, difference);  // the next sample is always reached
        }
        door.Add(later(i), difference, tolerance);
        for (const double d : difference) isStill = isStill && std::abs(d) <= tolerance;
    }
    if (!(isStill && kept.size() == 1) && count > 1) kept.push_back(count - 1);
    return kept;
}

using CTurn = std::array<double, 4>;

CTurn TurnAt(std::span<const float> turns, std::size_t i) {
    return {static_cast<double>(turns[i * 4]), static_cast<double>(turns[i * 4 + 1]),
            static_cast<double>(turns[i * 4 + 2]), static_cast<double>(turns[i * 4 + 3])};
}

/** The turn from one quaternion to another as axis times angle; false when it is so long that readers may take the
 * other way round. */
bool TurnFrom(const CTurn& a, const CTurn& b, std::vector<double>& out) {
    // conjugate(a) * b
    std::array<double, 3> v{a[3] * b[0] - a[0] * b[3] - a[1] * b[2] + a[2] * b[1],
                            a[3] * b[1] - a[1] * b[3] - a[2] * b[0] + a[0] * b[2],
                            a[3] * b[2] - a[2] * b[3] - a[0] * b[1] + a[1] * b[0]};
    double w = a[3] * b[3] + a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
    if (w < 0) {
        w = -w;
        for (double& part : v) part = -part;
    }
    const double sine = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    const double angle = 2 * std::atan2(sine, w);
    for (std::size_t i = 0; i < 3; ++i) out[i] = sine > 1e-12 ? v[i] / sine * angle : 2 * v[i];
    constexpr double kLongest = 2.8;
    return angle < kLongest;
}

}  // namespace

std::vector<std::uint32_t> KeptValues(std::span<const float> times, std::span<const float> values,
                                      std::size_t dimensions, float tolerance) {
    return Kept(times, dimensions, static_cast<double>(tolerance),
                [&](std::uint32_t from, std::uint32_t to, std::vector<double>& out) {
                    for (std::size_t i = 0; i < dimensions; ++i)
                        out[i] = static_cast<double>(values[to * dimensions + i]) -
                                 static_cast<double>(values[from * dimensions + i]);
                    return true;
                });
}

std::vector<std::uint32_t> KeptTurns(std::span<const float> times, std::span<float> turns, float tolerance) {
    for (std::size_t i = 1; i < times.size(); ++i) {
        const CTurn a = TurnAt(turns, i - 1), b = TurnAt(turns, i);
        if (a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3] >= 0) continue;
        for (std::size_t k = 0; k < 4; ++k) turns[i * 4 + k] = -turns[i * 4 + k];
    }
    return Kept(times, 3, static_cast<double>(tolerance),
                [&](std::uint32_t from, std::uint32_t to, std::vector<double>& out) {
                    return TurnFrom(TurnAt(turns, from), TurnAt(turns, to), out);
                });
}

}  // namespace key_reduction
