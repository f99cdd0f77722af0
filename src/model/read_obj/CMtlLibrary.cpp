// SPDX-License-Identifier: MIT
#include "model/read_obj/CMtlLibrary.h"

#include <lib3ds/material.h>
#include <tiny_obj_loader.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <new>
#include <sstream>
#include <vector>

#include "model/read_obj/mtl_text.h"
#include "model/scene/lib3ds_name.h"

namespace {

constexpr float kPlainGrey = 0.588f;  // as 3D Studio's own default
constexpr std::size_t kMaxMaterialText = 65'536;
constexpr std::size_t kMaxMaterials = 100'000;  // a name takes ten times the memory of the text that makes it
constexpr std::string_view kBlanks = " \t\r\n";

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

float Unit(float value) {
    return std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
}

void SetColor(Lib3dsRgba& to, const tinyobj::real_t* rgb) {
    for (int i = 0; i < 3; ++i) to[i] = Unit(rgb[i]);
    to[3] = 1;
}

bool IsWhite(const tinyobj::real_t* rgb) {
    return rgb[0] >= 1 && rgb[1] >= 1 && rgb[2] >= 1;
}

bool IsUsableFactor(float value) {
    return std::isfinite(value) && std::abs(value) > 1e-6f && std::abs(value) < 1e6f;
}

// lib3ds' maps are scaled about their middle, those of OBJ about the origin, and moved after that.
void SetAxis(Lib3dsTextureMap& map, int axis, float scale, float offset) {
    if (!IsUsableFactor(scale)) scale = 1;
    if (!std::isfinite(offset)) offset = 0;
    map.scale[axis] = scale;
    map.offset[axis] = (0.5f - offset) / scale - 0.5f;
}

void SetMap(Lib3dsTextureMap& map, const std::string& name, const tinyobj::texture_option_t& options,
            float amount) {
    if (name.empty()) return;
    CopyName(map.name, name);
    map.percent = Unit(amount);
    map.flags = options.clamp ? LIB3DS_NO_TILE : 0;  // a new material's maps are not tiled
    SetAxis(map, 0, options.scale[0], options.origin_offset[0]);
    SetAxis(map, 1, options.scale[1], options.origin_offset[1]);
}

void SetMaps(Lib3dsMaterial& to, const tinyobj::material_t& from) {
    const bool colorFromAmbient = from.diffuse_texname.empty();
    const std::string& color = colorFromAmbient ? from.ambient_texname : from.diffuse_texname;
    SetMap(to.texture1_map, color, colorFromAmbient ? from.ambient_texopt : from.diffuse_texopt, 1);
    SetMap(to.opacity_map, from.alpha_texname, from.alpha_texopt, 1);
    if (!color.empty() && from.alpha_texname == color) to.opacity_map.flags |= LIB3DS_ALPHA_SOURCE;
    SetMap(to.specular_map, from.specular_texname, from.specular_texopt, 1);
    SetMap(to.shininess_map, from.specular_highlight_texname, from.specular_highlight_texopt, 1);
    SetMap(to.self_illum_map, from.emissive_texname, from.emissive_texopt, 1);
    SetMap(to.bump_map, from.bump_texname, from.bump_texopt, from.bump_texopt.bump_multiplier);
    const float mirror = std::max({to.specular[0], to.specular[1], to.specular[2]});
    SetMap(to.reflection_map, from.reflection_texname, from.reflection_texopt, mirror > 0 ? mirror : 0.25f);
}

struct CStated {
    bool ambient = false, diffuse = false, illumination = false, exponent = false;
};

void SetValues(Lib3dsMaterial& to, const tinyobj::material_t& from, const CStated& stated) {
    if (stated.diffuse) SetColor(to.diffuse, from.diffuse);
    const bool ownAmbient = stated.ambient && !IsWhite(from.ambient);
    if (ownAmbient) {
        SetColor(to.ambient, from.ambient);
    } else {
        std::copy_n(to.diffuse, 4, to.ambient);
    }
    SetColor(to.specular, from.specular);
    const bool shines =
        to.specular[0] + to.specular[1] + to.specular[2] > 0 && !(stated.illumination && from.illum < 2);
    to.shin_strength = shines ? 1.0f : 0.0f;
    if (stated.exponent) to.shininess = from.shininess > 1 ? Unit(std::log2(from.shininess) / 10) : 0.0f;
    to.transparency = Unit(1 - from.dissolve);
    to.self_ilpct = std::max({Unit(from.emission[0]), Unit(from.emission[1]), Unit(from.emission[2])});
    to.self_illum = to.self_ilpct > 0;
}

tinyobj::material_t Parse(const std::string& canonical) {
    std::istringstream stream("newmtl m\n" + canonical);
    std::map<std::string, int> numbers;
    std::vector<tinyobj::material_t> materials;
    std::string warnings, errors;
    tinyobj::LoadMtl(&numbers, &materials, &stream, &warnings, &errors);
    return materials.empty() ? tinyobj::material_t() : materials.back();
}

std::string TrimmedName(std::string_view name) {
    const std::size_t first = name.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return std::string(name.substr(first, name.find_last_not_of(kBlanks) - first + 1).substr(0, 256));
}

}  // namespace

void CMtlLibrary::Add(std::string text) {
    std::string_view all = m_texts.emplace_back(std::move(text));
    if (all.starts_with("\xEF\xBB\xBF")) all.remove_prefix(3);
    constexpr std::string_view kKeyword = "newmtl";
    std::string name;
    std::size_t blockBegin = 0;
    const auto finish = [&](std::size_t end) {
        if (name.empty() || m_materials.size() == kMaxMaterials) return;
        m_materials.try_emplace(name, all.substr(blockBegin, end - blockBegin));
    };
    for (std::size_t begin = 0; begin < all.size();) {
        const std::size_t end = std::min(all.find_first_of("\r\n", begin), all.size());
        std::string_view line = all.substr(begin, end - begin);
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (line.starts_with(kKeyword) && line.size() > kKeyword.size() && IsBlank(line[kKeyword.size()])) {
            finish(begin);
            name = TrimmedName(line.substr(kKeyword.size()));
            blockBegin = end;
        }
        begin = end + 1;
    }
    finish(all.size());
}

Lib3dsMaterial* CMtlLibrary::Make(const std::string& name, const std::string& lib3dsName) const {
    Lib3dsMaterial* material = lib3ds_material_new();
    if (!material) throw std::bad_alloc();
    CopyName(material->name, lib3dsName);
    std::fill_n(material->diffuse, 3, kPlainGrey);
    std::fill_n(material->ambient, 3, kPlainGrey);
    material->two_sided = 1;
    const auto found = m_materials.find(name);
    if (found == m_materials.end()) return material;

    const std::string text = CanonicalMtl(found->second.substr(0, kMaxMaterialText));
    const auto states = [&](std::string_view keyword) {
        return text.starts_with(keyword) || text.find("\n" + std::string(keyword)) != std::string::npos;
    };
    const tinyobj::material_t parsed = Parse(text);
    SetValues(*material, parsed, {states("Ka "), states("Kd "), states("illum "), states("Ns ")});
    SetMaps(*material, parsed);
    return material;
}
