// SPDX-License-Identifier: MIT
#include <cmath>
#include <numbers>

#include "make_samples/noise.h"
#include "make_samples/paint_math.h"
#include "make_samples/picture_file.h"
#include "make_samples/pictures.h"

namespace pictures {
namespace {

using paint_math::Grey;
using paint_math::Mix;

struct CBrick {
    float inside;  ///< 0 in the mortar, 1 on the brick
    float tone;    ///< 0..1, one value for each brick
};

CBrick BrickAt(float u, float v) {
    constexpr float kRows = 8, kColumns = 4;
    const float row = std::floor(v * kRows);
    const float x = u * kColumns + (static_cast<int>(row) % 2 == 0 ? 0.0f : 0.5f);
    const float column = std::floor(x), dx = x - column, dy = v * kRows - row;
    const float edge = std::min(std::min(dx, 1 - dx) * 2, std::min(dy, 1 - dy));
    const int wrapped = static_cast<int>(column) % static_cast<int>(kColumns);
    return {std::clamp((edge - 0.05f) * 14, 0.0f, 1.0f), noise::Hash(wrapped, static_cast<int>(row), 71)};
}

}  // namespace

CImage Checker(int squares) {
    return Paint(256, 256, [squares](float u, float v) {
        const int cell = static_cast<int>(u * static_cast<float>(squares)) +
                         static_cast<int>(v * static_cast<float>(squares));
        return Grey(cell % 2 == 0 ? 0.86f : 0.22f);
    });
}

CImage Bricks() {
    return Paint(256, 256, [](float u, float v) {
        const CBrick brick = BrickAt(u, v);
        const float rough = noise::Cloud(u * 32, v * 32, 72, 3, 32);
        const CVec3 clay =
            Mix({0.50f, 0.17f, 0.11f}, {0.70f, 0.34f, 0.22f}, brick.tone) * (0.8f + 0.4f * rough);
        return Mix(Grey(0.68f * (0.85f + 0.3f * rough)), clay, brick.inside);
    });
}

CImage BrickHeights() {
    return Paint(256, 256, [](float u, float v) {
        return Grey(BrickAt(u, v).inside * (0.75f + 0.25f * noise::Cloud(u * 32, v * 32, 72, 3, 32)));
    });
}

CImage Lattice() {
    return Paint(256, 256, [](float u, float v) {
        constexpr float kPi = std::numbers::pi_v<float>;
        const float strands =
            std::max(std::fabs(std::sin((u + v) * 6 * kPi)), std::fabs(std::sin((u - v) * 6 * kPi)));
        return Grey(std::clamp((strands - 0.86f) * 16, 0.0f, 1.0f));
    });
}

CImage Corners() {
    return Paint(128, 128, [](float u, float v) {
        const float frame = std::min(std::min(u, 1 - u), std::min(v, 1 - v));
        if (frame < 0.04f) return CVec3{0.08f, 0.08f, 0.08f};
        if (std::fabs(v - 0.5f) < 0.05f && u > 0.2f) return CVec3{1, 1, 1};  // a stroke towards +u
        if (std::fabs(u - 0.5f) < 0.05f && v > 0.5f) return CVec3{1, 1, 1};  // a stroke towards +v
        const CVec3 low = u < 0.5f ? CVec3{0.85f, 0.2f, 0.2f} : CVec3{0.2f, 0.7f, 0.25f};
        const CVec3 high = u < 0.5f ? CVec3{0.2f, 0.35f, 0.85f} : CVec3{0.9f, 0.75f, 0.2f};
        return v < 0.5f ? low : high;
    });
}

CImage Marble(bool dark) {
    return Paint(256, 256, [dark](float u, float v) {
        const float cloud = noise::Cloud(u * 6, v * 6, dark ? 81 : 82, 6, 6);
        const float vein = 1 - std::fabs(std::sin((u * 3 + v * 2 + cloud * 4) * std::numbers::pi_v<float>));
        const CVec3 stone = dark ? CVec3{0.08f, 0.09f, 0.10f} : CVec3{0.72f, 0.69f, 0.63f};
        return Mix(stone, dark ? Grey(0.75f) : Grey(0.38f), std::pow(std::max(vein, 0.0f), 8.0f) * 0.8f) *
               (0.85f + 0.3f * cloud);
    });
}

}  // namespace pictures
