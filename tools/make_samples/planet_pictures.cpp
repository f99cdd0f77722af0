// SPDX-License-Identifier: MIT
#include <cmath>
#include <numbers>

#include "make_samples/noise.h"
#include "make_samples/paint_math.h"
#include "make_samples/picture_file.h"
#include "make_samples/pictures.h"

namespace pictures {
namespace {

using paint_math::Mix;
using paint_math::Step;

constexpr int kWidth = 512, kHeight = 256;
constexpr std::int32_t kPeriod = 8;

/** Noise on a sphere map: wraps in u, and is not crowded together towards the poles. */
float Globe(float u, float v, std::uint32_t seed, int octaves) {
    const float nearPole = Step(0.35f, 0.5f, std::fabs(v - 0.5f));
    const float body = noise::Cloud(u * kPeriod, v * kPeriod / 2, seed, octaves, kPeriod);
    return body + (noise::Cloud(0, v * 12, seed + 99, 2) - body) * nearPole;
}

/** How dark a crater makes a point, and how bright its wall: -1..1. */
float Craters(float u, float v, std::uint32_t seed) {
    float height = 0;
    for (int i = 0; i < 60; ++i) {
        const float cu = noise::Hash(i, 1, seed), cv = 0.12f + 0.76f * noise::Hash(i, 2, seed);
        const float size = 0.012f + 0.05f * std::pow(noise::Hash(i, 3, seed), 4.0f);
        const float du = std::fabs(u - cu);
        const float distance =
            std::hypot(std::min(du, 1 - du) * 2 * std::sin(cv * std::numbers::pi_v<float>), v - cv) / size;
        if (distance < 1.3f)
            height += distance < 0.8f ? -0.8f + distance * 0.4f : 1 - std::fabs(distance - 1) * 3;
    }
    return std::clamp(height, -1.0f, 1.0f);
}

}  // namespace

CImage Sun() {
    return Paint(kWidth, kHeight, [](float u, float v) {
        const float heat = Globe(u, v, 7, 6), grain = noise::Cloud(u * 64, v * 32, 8, 2, 64);
        return Mix({0.93f, 0.46f, 0.06f}, {1.0f, 0.93f, 0.55f}, heat * 1.5f - 0.3f + (grain - 0.5f) * 0.35f);
    });
}

CImage RockyPlanet(std::uint32_t seed, float red, float green, float blue, float contrast) {
    const CVec3 color{red, green, blue};
    return Paint(kWidth, kHeight, [=](float u, float v) {
        const float land = (Globe(u, v, seed, 6) - 0.5f) * contrast;
        return color * (1 + land + Craters(u, v, seed) * 0.16f);
    });
}

CImage BluePlanet() {
    return Paint(kWidth, kHeight, [](float u, float v) {
        const float height = Globe(u, v, 21, 7) + 0.08f * std::cos((v - 0.5f) * 5);
        const float latitude = std::fabs(v - 0.5f) * 2;
        CVec3 color = Mix({0.03f, 0.12f, 0.34f}, {0.09f, 0.36f, 0.58f}, (height - 0.3f) * 4);
        const CVec3 land = Mix(
            Mix({0.22f, 0.42f, 0.14f}, {0.62f, 0.52f, 0.30f}, Step(0.1f, 0.45f, latitude + height - 0.62f)),
            {0.42f, 0.34f, 0.26f}, (height - 0.64f) * 6);
        color = Mix(color, land, Step(0.555f, 0.57f, height));
        color = Mix(color, {0.94f, 0.96f, 0.98f}, Step(0.80f, 0.86f, latitude + (height - 0.5f) * 0.4f));
        const float drift = u + 0.04f * std::sin(v * 19);
        const float cloud =
            noise::Cloud(drift * 12, v * 14, 45, 5, 12) - 0.2f * Step(0.36f, 0.5f, std::fabs(v - 0.5f));
        return Mix(color, {1, 1, 1}, Step(0.58f, 0.74f, cloud) * 0.8f);
    });
}

CImage BandedPlanet(std::uint32_t seed, bool pale) {
    return Paint(kWidth, kHeight, [=](float u, float v) {
        const float swirl = (noise::Cloud(u * 16, v * 24, seed, 4, 16) - 0.5f) * (pale ? 0.012f : 0.035f);
        const float band = noise::Cloud(0.5f, (v + swirl) * (pale ? 16 : 22), seed + 5, 3);
        CVec3 color = pale ? Mix({0.72f, 0.60f, 0.40f}, {0.96f, 0.88f, 0.68f}, band * 1.8f - 0.4f)
                           : Mix({0.58f, 0.36f, 0.22f}, {0.95f, 0.87f, 0.74f}, band * 2.4f - 0.7f);
        const float spot = std::hypot((u - 0.62f) * 2 / 1.9f, v - 0.36f) / 0.055f;
        if (!pale) color = Mix({0.74f, 0.28f, 0.16f}, color, Step(0.75f, 1.05f, spot));
        return color;
    });
}

CImage RingColor() {
    return Paint(256, 16, [](float u, float) {
        return Mix({0.62f, 0.52f, 0.38f}, {0.95f, 0.88f, 0.72f},
                   noise::Cloud(u * 40, 0.5f, 61, 4) * 1.6f - 0.3f);
    });
}

CImage RingOpacity() {
    return Paint(256, 16, [](float u, float) {
        const float grooves = 0.45f + 0.55f * noise::Cloud(u * 30, 3.5f, 62, 4);
        const float gap =
            Step(0.012f, 0.022f, std::fabs(u - 0.66f)) * Step(0.0f, 0.12f, u) * (1 - Step(0.97f, 1.0f, u));
        const float value = grooves * gap * (u < 0.25f ? 0.45f : 1.0f);
        return CVec3{value, value, value};
    });
}

}  // namespace pictures
