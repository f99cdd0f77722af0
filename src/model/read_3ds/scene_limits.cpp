// SPDX-License-Identifier: MIT
#include "model/read_3ds/scene_limits.h"

#include <lib3ds/camera.h>
#include <lib3ds/file.h>
#include <lib3ds/light.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <cmath>

#include "model/textures/CLib3dsMatUtil.h"

namespace {
constexpr float kMaxCoordinate = 1e15f;

float InRange(float value, float low, float high) {
    return std::isfinite(value) ? std::clamp(value, low, high) : low;
}

void ClampColor(float* color) {
    for (int i = 0; i < 3; ++i) color[i] = InRange(color[i], 0, 1);
}

void ClampPosition(float* position) {
    for (int i = 0; i < 3; ++i) position[i] = std::abs(position[i]) < kMaxCoordinate ? position[i] : 0;
}

void ClampMap(Lib3dsTextureMap& map) {
    map.percent = InRange(map.percent, 0, 1);
    for (int i = 0; i < 2; ++i) {
        // A scale of 0 would show one texel everywhere; exporters write it for "not set".
        if (!std::isfinite(map.scale[i]) || map.scale[i] == 0) map.scale[i] = 1;
        map.scale[i] = InRange(map.scale[i], -1e5f, 1e5f);
        map.offset[i] = std::abs(map.offset[i]) < 1e5f ? map.offset[i] : 0;
    }
    map.rotation = std::isfinite(map.rotation) ? std::fmod(map.rotation, 360.0f) : 0;
}

void ClampMaterial(Lib3dsMaterial& material, CNoteList& notes) {
    ClampColor(material.ambient);
    ClampColor(material.diffuse);
    ClampColor(material.specular);
    if (material.transparency > 1 || material.transparency < 0) {
        notes.Repaired("A transparency outside 0 to 100 % was put inside",
                       CNoteList::Printable(material.name));
    }
    for (float* share : {&material.shininess, &material.shin_strength, &material.transparency,
                         &material.falloff, &material.self_ilpct, &material.blur}) {
        *share = InRange(*share, 0, 1);
    }
    material.wire_size = InRange(material.wire_size, 0, 100);
    for (Lib3dsTextureMap* map : CLib3dsMatUtil::MapsOf(material)) ClampMap(*map);
}

void ClampLight(Lib3dsLight& light) {
    ClampPosition(light.position);
    ClampPosition(light.spot);
    for (float& channel : light.color) channel = InRange(channel, 0, 100);
    light.multiplier = InRange(light.multiplier, -100, 100);
    light.hot_spot = InRange(light.hot_spot, 0, 179.5f);
    light.fall_off = std::max(InRange(light.fall_off, 0, 179.5f), light.hot_spot);
    light.inner_range = InRange(light.inner_range, 0, kMaxCoordinate);
    light.outer_range = InRange(light.outer_range, 0, kMaxCoordinate);
}
}  // namespace

void ClampScene(Lib3dsFile& file, CNoteList& notes) {
    for (Lib3dsMaterial* material = file.materials; material; material = material->next)
        ClampMaterial(*material, notes);
    for (Lib3dsLight* light = file.lights; light; light = light->next) ClampLight(*light);
    for (Lib3dsCamera* camera = file.cameras; camera; camera = camera->next) {
        ClampPosition(camera->position);
        ClampPosition(camera->target);
        camera->fov = camera->fov > 0 ? InRange(camera->fov, 0.5f, 175) : 45;
        camera->roll = std::isfinite(camera->roll) ? std::fmod(camera->roll, 360.0f) : 0;
    }
    ClampColor(file.ambient);
    ClampColor(file.background.solid.col);
    if (!std::isfinite(file.master_scale) || file.master_scale <= 0) file.master_scale = 1;
}
