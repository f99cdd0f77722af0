// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

struct CPreparedMaterial;

/** The least alpha, of 255, that counts as solid; as little above 0 counts as nothing. The error of at most 2 %
 * is invisible, and lossy picture formats stay solid, and clear, where they were meant to be. */
constexpr int kSolidAlpha = 250;
/** The brightness of a pixel (red, green, blue), as maps that have one value take it. */
[[nodiscard]] constexpr std::uint8_t GreyOf(const std::uint8_t* pixel) {
    return static_cast<std::uint8_t>((299u * pixel[0] + 587u * pixel[1] + 114u * pixel[2] + 500u) / 1000u);
}
/** An opacity of a picture, of 255, as it counts wherever it is drawn or written. */
[[nodiscard]] constexpr std::uint8_t CountedAlpha(std::uint8_t alpha) {
    if (alpha >= kSolidAlpha) return 255;
    return alpha <= 255 - kSolidAlpha ? 0 : alpha;
}

/** True where a material shows nothing at all. */
[[nodiscard]] bool IsInvisible(const CPreparedMaterial& material);
/** True where the material itself asks to be drawn as lines. */
[[nodiscard]] bool IsWire(const CPreparedMaterial& material);
/** True where a material is blended with what lies behind it, and so drawn after the opaque ones. */
[[nodiscard]] bool IsBlended(const CPreparedMaterial& material);
/** True where a blended material is transparent only through its pictures, so that parts of it may
 * be opaque. */
[[nodiscard]] bool MayBeSolid(const CPreparedMaterial& material);
