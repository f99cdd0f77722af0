// SPDX-License-Identifier: MIT
#pragma once

struct CPreparedMaterial;

/** True where a material shows nothing at all. */
[[nodiscard]] bool IsInvisible(const CPreparedMaterial& material);
/** True where the material itself asks to be drawn as lines. */
[[nodiscard]] bool IsWire(const CPreparedMaterial& material);
/** True where a material is blended with what lies behind it, and so drawn after the opaque ones. */
[[nodiscard]] bool IsBlended(const CPreparedMaterial& material);
/** True where a blended material is transparent only through its pictures, so that parts of it may
 * be opaque. */
[[nodiscard]] bool MayBeSolid(const CPreparedMaterial& material);
