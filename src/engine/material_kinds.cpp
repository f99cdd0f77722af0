// SPDX-License-Identifier: MIT
#include "engine/material_kinds.h"

#include "model/CPreparedScene.h"

bool IsInvisible(const CPreparedMaterial& material) {
    return material.transparency >= 1 && !material.opacity.HasEffect();
}

bool IsWire(const CPreparedMaterial& material) {
    return material.wire || material.shading == EShading::Wire;
}

bool IsBlended(const CPreparedMaterial& material) {
    return material.needsBlending || material.additive;
}
