// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfMaterials.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "export/gltf/glb/CJsonText.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/material_kinds.h"

namespace {

float Unit(float value) {
    return std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
}

/** What sRGB stands for. */
float Linear(float value) {
    const float v = Unit(value);
    return v <= 0.04045f ? v / 12.92f : std::pow((v + 0.055f) / 1.055f, 2.4f);
}

float Roughness(float shininess) {
    const float exponent = std::exp2(10 * Unit(shininess));
    return std::pow(2 / (exponent + 2), 0.25f);
}

}  // namespace

int CGltfMaterials::Use(std::uint32_t material, bool hasTexCoords) {
    const auto [place, isNew] =
        m_known.try_emplace({material, hasTexCoords}, static_cast<int>(m_used.size()));
    if (isNew) m_used.push_back(material);
    return place->second;
}

void CGltfMaterials::WriteOne(CJsonText& json, const CPreparedMaterial& material) const {
    json.BeginObject();
    json.Key("pbrMetallicRoughness").BeginObject();
    const CVec3 c = material.diffuse;
    const std::array<float, 4> base{Linear(c.x), Linear(c.y), Linear(c.z), 1 - Unit(material.transparency)};
    json.Member("baseColorFactor", std::span<const float>(base));
    json.Member("metallicFactor", 0).Member("roughnessFactor", Roughness(material.shininess));
    json.EndObject();
    if (IsBlended(material)) json.Member("alphaMode", "BLEND");
    if (material.twoSided || m_options.doubleSided) json.Member("doubleSided", true);
    json.EndObject();
}

void CGltfMaterials::Write(CJsonText& json) const {
    if (m_used.empty()) return;
    json.Key("materials").BeginArray();
    for (const std::uint32_t material : m_used) WriteOne(json, m_scene.materials[material]);
    json.EndArray();
}
