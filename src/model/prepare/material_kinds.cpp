// SPDX-License-Identifier: MIT
#include "model/prepare/material_kinds.h"

#include "model/prepare/CPreparedScene.h"

bool IsInvisible(const CPreparedMaterial& material) {
    return material.transparency >= 1 && !material.opacity.HasEffect();
}

bool IsWire(const CPreparedMaterial& material) {
    return material.wire || material.shading == EShading::Wire;
}

bool IsBlended(const CPreparedMaterial& material) {
    return material.needsBlending || material.additive;
}

bool MayBeSolid(const CPreparedMaterial& material) {
    // A full opacity map stands for the material's own value.
    const bool byMap = material.opacity.HasEffect() && material.opacity.amount >= 1;
    return !material.additive && (material.transparency <= 0 || byMap);
}
