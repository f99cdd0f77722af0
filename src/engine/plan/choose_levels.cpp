// SPDX-License-Identifier: MIT
#include "engine/plan/choose_levels.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

std::uint32_t CoarsestWithin(const CLevelChoices& choices, const CNodeOptions& node, float error) {
    std::uint32_t chosen = 0;
    while (chosen + 1 < node.count && choices.options[node.first + chosen + 1].error <= error) ++chosen;
    return chosen;
}

double CostWithin(const CLevelChoices& choices, float error) {
    double sum = 0;
    for (const CNodeOptions& node : choices.nodes) {
        if (node.count > 0)
            sum +=
                static_cast<double>(choices.options[node.first + CoarsestWithin(choices, node, error)].cost);
    }
    return sum;
}

/** The smallest error whose cost fits; kMostError where none does. */
constexpr float kLeastError = 1.0f / 64, kMostError = 16384;

float SmallestErrorFor(const CLevelChoices& choices, double cost) {
    if (CostWithin(choices, 0) <= cost) return 0;
    float low = std::log2(kLeastError), high = std::log2(kMostError);
    for (int i = 0; i < 12; ++i) {
        const float middle = (low + high) / 2;
        (CostWithin(choices, std::exp2(middle)) <= cost ? high : low) = middle;
    }
    return std::exp2(high);
}

double MakeSmallestBoxes(CLevelChoices& choices, double cost, double mostCost) {
    std::vector<std::uint32_t> order(choices.nodes.size());
    std::iota(order.begin(), order.end(), 0u);
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return choices.nodes[a].pixels < choices.nodes[b].pixels;
    });
    for (const std::uint32_t n : order) {
        if (cost <= mostCost) break;
        CNodeOptions& node = choices.nodes[n];
        if (node.count == 0) continue;
        const float saved = choices.options[node.first + node.chosen].cost - kBoxCost;
        if (saved <= 0) continue;
        node.chosen = node.count;
        cost -= static_cast<double>(saved);
    }
    return cost;
}

}  // namespace

double ChooseLevels(CLevelChoices& choices, const CAllowedCost& allowed, float& allowedError) {
    constexpr double kFinerBelow = 0.8, kAim = 0.9;
    const double mostCost = std::clamp(CostWithin(choices, kShownError), allowed.usual, allowed.patient);
    const double before = CostWithin(choices, allowedError);
    const bool fits = before <= mostCost;
    if (!fits || (allowedError > 0 && before < kFinerBelow * mostCost))
        allowedError = SmallestErrorFor(choices, kAim * mostCost);
    for (CNodeOptions& node : choices.nodes) node.chosen = CoarsestWithin(choices, node, allowedError);
    // Rather a somewhat longer frame than boxes.
    constexpr double kBoxesBeyond = 1.5;
    return MakeSmallestBoxes(choices, CostWithin(choices, allowedError), kBoxesBeyond * mostCost);
}
