// SPDX-License-Identifier: MIT
#pragma once

#include <wx/colour.h>

#include <cmath>

/** The colour between two that has this share (0..1) of the second. */
[[nodiscard]] inline wxColour MixedColour(const wxColour& one, const wxColour& other, double share) {
    const auto mix = [share](unsigned char a, unsigned char b) {
        return static_cast<unsigned char>(std::lround(a * (1 - share) + b * share));
    };
    return {mix(one.Red(), other.Red()), mix(one.Green(), other.Green()), mix(one.Blue(), other.Blue())};
}
