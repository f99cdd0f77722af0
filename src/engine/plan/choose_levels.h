// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

/** One form in which a node can be drawn. */
struct CLevelOption {
    float error;  ///< in pixels
    float cost;   ///< as CFrameBudget counts it
};

/** The forms of one node: options [first, first + count) of a CLevelChoices, finest first. */
struct CNodeOptions {
    std::uint32_t first = 0, count = 0;
    float pixels = 0;          ///< its size on the screen
    std::uint32_t chosen = 0;  ///< 0: the finest; count: only its box
};

struct CLevelChoices {
    std::vector<CLevelOption> options;
    std::vector<CNodeOptions> nodes;
};

constexpr float kBoxCost = 60;

/** What a picture may cost: as a rule, and where it would be coarser than kShownError otherwise. */
struct CAllowedCost {
    double usual = 0;
    double patient = usual;
};

/** In pixels: from here on it shows that a picture is coarse. */
constexpr float kShownError = 0.35f;

/** Chooses a form for each node: the coarsest within an error that is the same for all, as small as the sum of costs
 * allows. Where even the coarsest cost half as much again, the smallest nodes become boxes. allowedError (pixels) is the one
 * before, and is kept while the sum stays between 0.8 of what is allowed and all of it, so that the picture does not flicker.
 * Returns the sum of costs. */
double ChooseLevels(CLevelChoices& choices, const CAllowedCost& allowed, float& allowedError);
