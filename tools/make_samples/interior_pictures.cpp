// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <numbers>
#include <string_view>

#include "make_samples/noise.h"
#include "make_samples/paint_math.h"
#include "make_samples/picture_file.h"
#include "make_samples/pictures.h"

namespace pictures {
namespace {

using paint_math::Mix;
using paint_math::Step;

constexpr float kPi = std::numbers::pi_v<float>;

float DistanceToLine(CVec2 p, CVec2 a, CVec2 b) {
    const CVec2 ab{b.x - a.x, b.y - a.y}, ap{p.x - a.x, p.y - a.y};
    const float t = std::clamp((ap.x * ab.x + ap.y * ab.y) / (ab.x * ab.x + ab.y * ab.y), 0.0f, 1.0f);
    return std::hypot(ap.x - ab.x * t, ap.y - ab.y * t);
}

/** Distance from p to a Roman numeral, one letter's width 0.6, its height 1, centred on the origin. */
float DistanceToNumeral(CVec2 p, std::string_view numeral) {
    constexpr float kAdvance = 0.52f;
    float x = -kAdvance * static_cast<float>(numeral.size() - 1) / 2, nearest = 10;
    for (const char letter : numeral) {
        const CVec2 q{p.x - x, p.y};
        switch (letter) {
            case 'I':
                nearest = std::min(nearest, DistanceToLine(q, {0, -0.5f}, {0, 0.5f}));
                break;
            case 'V':
                nearest = std::min({nearest, DistanceToLine(q, {-0.22f, 0.5f}, {0, -0.5f}),
                                    DistanceToLine(q, {0.22f, 0.5f}, {0, -0.5f})});
                break;
            default:
                nearest = std::min({nearest, DistanceToLine(q, {-0.22f, 0.5f}, {0.22f, -0.5f}),
                                    DistanceToLine(q, {0.22f, 0.5f}, {-0.22f, -0.5f})});
        }
        x += kAdvance;
    }
    return nearest;
}

/** Gold ink, 0..1, of the dial at a radius (1 at the rim) and an angle in turns. */
float DialInk(float radius, float turn) {
    constexpr std::array<std::string_view, 12> kNumerals{"XII", "I",   "II",   "III", "IIII", "V",
                                                         "VI",  "VII", "VIII", "IX",  "X",    "XI"};
    const float soft = 0.0035f;
    float ink = 0;
    for (const float circle : {0.975f, 0.925f, 0.72f})
        ink = std::max(ink, 1 - Step(0.003f, 0.003f + soft, std::fabs(radius - circle)));
    const bool hour = std::fabs(turn * 12 - std::round(turn * 12)) < 0.05f;
    const float tick = std::fabs(turn * 120 - std::round(turn * 120)) / 120 * 2 * kPi * radius;
    if (radius > 0.925f && radius < 0.975f)
        ink = std::max(ink, 1 - Step(hour ? 0.007f : 0.002f, hour ? 0.010f : 0.005f, tick));
    const float place = std::round(turn * 12);
    const float angle = (turn - place / 12) * 2 * kPi;
    const CVec2 local{radius * std::sin(angle) / 0.105f, (radius * std::cos(angle) - 0.825f) / 0.125f};
    const auto index = static_cast<std::size_t>(static_cast<int>(place) % 12);
    return std::max(ink, 1 - Step(0.075f, 0.11f, DistanceToNumeral(local, kNumerals[index])));
}

float WoodGrain(float along, float across, std::uint32_t seed) {
    const float wave = noise::Cloud(along * 1.5f, across * 5, seed, 3);
    const float rings = 0.5f + 0.5f * std::sin((across * 26 + wave * 9) * kPi);
    const float fibre = noise::Cloud(along * 6, across * 220, seed + 3, 2);
    return 0.45f * rings + 0.35f * fibre + 0.2f * wave;
}

}  // namespace

CImage Dial() {
    return Paint(1024, 1024, [](float u, float v) {
        const float x = u * 2 - 1, y = v * 2 - 1, radius = std::hypot(x, y);
        float turn = std::atan2(x, y) / (2 * kPi);
        if (turn < 0) turn += 1;
        const CVec3 enamel =
            Mix({0.045f, 0.07f, 0.16f}, {0.07f, 0.12f, 0.26f}, noise::Cloud(u * 9, v * 9, 31, 4));
        const CVec3 star{0.75f, 0.72f, 0.6f};
        const float sky =
            noise::Hash(static_cast<int>(u * 340), static_cast<int>(v * 340), 5) > 0.994f && radius < 0.7f
                ? 0.5f
                : 0;
        return Mix(Mix(enamel, star, sky), {0.88f, 0.70f, 0.34f}, DialInk(radius, turn));
    });
}

CImage TurnedWood() {
    return Paint(1024, 256, [](float u, float v) {
        // The first and last eighth fade into each other, so that the seam of the turned piece does not show.
        const float there = WoodGrain(v * 0.6f, u * 1.2f, 11), back = WoodGrain(v * 0.6f, (u - 1) * 1.2f, 11);
        const float grain = there + (back - there) * Step(0.875f, 1.0f, u);
        return Mix({0.20f, 0.085f, 0.035f}, {0.50f, 0.25f, 0.11f}, grain);
    });
}

CImage TableTop() {
    return Paint(1024, 1024, [](float u, float v) {
        constexpr float kBoards = 9;
        const float board = std::floor(v * kBoards), inBoard = v * kBoards - board;
        const float tone = 0.82f + 0.3f * noise::Hash(static_cast<int>(board), 4, 17);
        const float grain = WoodGrain(u * 2 + board * 3.7f, inBoard / kBoards * 2 + board,
                                      23 + static_cast<std::uint32_t>(board));
        const float joint = Step(0.0f, 0.012f, std::min(inBoard, 1 - inBoard));
        const float radius = std::hypot(u - 0.5f, v - 0.5f) * 2;
        const float shade = 0.3f + 0.7f * Step(0.56f, 0.86f, radius);
        return Mix({0.16f, 0.10f, 0.06f}, {0.42f, 0.27f, 0.16f}, grain) *
               (tone * shade * (0.45f + 0.55f * joint));
    });
}

CImage Room() {
    return Paint(256, 256, [](float u, float v) {
        const CVec3 floor{0.16f, 0.10f, 0.06f}, wall{0.42f, 0.33f, 0.22f}, ceiling{0.80f, 0.74f, 0.62f};
        CVec3 color = v < 0.5f ? Mix(floor, wall, v * 2.2f - 0.1f) : Mix(wall, ceiling, (v - 0.5f) * 2.4f);
        const float window =
            Step(0.07f, 0.0f, std::fabs(u - 0.32f) - 0.10f) * Step(0.07f, 0.0f, std::fabs(v - 0.70f) - 0.11f);
        const float bars =
            Step(0.004f, 0.014f, std::fabs(u - 0.32f)) * Step(0.004f, 0.014f, std::fabs(v - 0.70f));
        color = Mix(color, {1.0f, 0.98f, 0.92f}, window * (0.4f + 0.6f * bars));
        return Mix(color, {0.95f, 0.80f, 0.55f}, 0.6f * Step(0.16f, 0.0f, std::hypot(u - 0.74f, v - 0.62f)));
    });
}

}  // namespace pictures
