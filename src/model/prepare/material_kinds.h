// SPDX-License-Identifier: MIT
#pragma once

struct CPreparedMaterial;

/** True where a material shows nothing at all. */
[[nodiscard]] bool IsInvisible(const CPreparedMaterial& material);
/** True where a material is drawn as lines of its own accord. */
[[nodiscard]] bool IsWire(const CPreparedMaterial& material);
/** True where a material is drawn after the opaque ones, onto what is behind it. */
[[nodiscard]] bool IsBlended(const CPreparedMaterial& material);
/** True where a blended material is transparent by its pictures alone, so that some of it may be solid. */
[[nodiscard]] bool MayBeSolid(const CPreparedMaterial& material);
