// SPDX-License-Identifier: MIT
#include "model/read_obj/mtl_material.h"

#include <lib3ds/material.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <new>
#include <variant>

#include "base/math/CVec.h"
#include "base/text/ascii_text.h"
#include "model/read_obj/CObjText.h"
#include "model/scene/lib3ds_name.h"

namespace {

constexpr float kPlainGrey = 0.588f;  // as 3D Studio's own default

// ---- what the file says

struct CMap {
    std::string path;
    std::array<float, 3> scale{1, 1, 1}, offset{}, bump{1}, ignored{};
    bool clamp = false;
};

struct CValues {
    std::optional<CVec3> ambient, diffuse, specular, emission;
    std::optional<float> exponent, illumination, dissolve, transparency;
    CMap ambientMap, diffuseMap, specularMap, exponentMap, emissionMap, opacityMap, bumpMap, reflectionMap;
};

struct CKeyword {
    std::string_view lower;
    std::variant<std::optional<CVec3> CValues::*, std::optional<float> CValues::*, CMap CValues::*> value;
};
constexpr std::array<CKeyword, 20> kKeywords{{
    {"ka", &CValues::ambient},
    {"kd", &CValues::diffuse},
    {"ks", &CValues::specular},
    {"ke", &CValues::emission},
    {"ns", &CValues::exponent},
    {"illum", &CValues::illumination},
    {"d", &CValues::dissolve},
    {"tr", &CValues::transparency},
    {"map_ka", &CValues::ambientMap},
    {"map_kd", &CValues::diffuseMap},
    {"map_ks", &CValues::specularMap},
    {"map_ns", &CValues::exponentMap},
    {"map_ke", &CValues::emissionMap},
    {"map_d", &CValues::opacityMap},
    {"map_opacity", &CValues::opacityMap},
    {"map_bump", &CValues::bumpMap},
    {"bump", &CValues::bumpMap},
    {"map_refl", &CValues::reflectionMap},
    {"refl", &CValues::reflectionMap},
    {"map_reflection", &CValues::reflectionMap},
}};

struct COption {
    std::string_view name;
    std::size_t numbers;  ///< at most; behind those that are left out stand other options or the name
    std::array<float, 3> CMap::*to;
};
constexpr std::array<COption, 6> kNumberOptions{{
    {"-s", 3, &CMap::scale},
    {"-o", 3, &CMap::offset},
    {"-t", 3, &CMap::ignored},
    {"-mm", 2, &CMap::ignored},
    {"-bm", 1, &CMap::bump},
    {"-boost", 1, &CMap::ignored},
}};
constexpr std::array<std::string_view, 8> kWordOptions{"-clamp", "-imfchan", "-blendu", "-blendv",
                                                       "-cc",    "-type",    "-texres", "-colorspace"};

// ---- reading it

/** The next word as a number; where it is none, text stays before it. */
std::optional<float> TakeNumber(CObjText& text) {
    CObjText behind = text;
    if (!behind.ToWord()) return std::nullopt;
    std::string_view word = behind.Word();
    if (word.starts_with('+')) word.remove_prefix(1);
    float value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
    text = behind;
    return value;
}

bool TakeOption(CObjText& text, CMap& map) {
    CObjText behind = text;
    if (!behind.ToWord()) return false;
    const std::string_view name = behind.Word();
    const auto isNamed = [name](const COption& option) { return option.name == name; };
    const auto* option = std::find_if(kNumberOptions.begin(), kNumberOptions.end(), isNamed);
    if (option != kNumberOptions.end()) {
        for (std::size_t i = 0; i < option->numbers; ++i) {
            const std::optional<float> number = TakeNumber(behind);
            if (!number) break;
            (map.*option->to)[i] = *number;
        }
    } else if (std::find(kWordOptions.begin(), kWordOptions.end(), name) != kWordOptions.end()) {
        const std::string_view word = behind.ToWord() ? behind.Word() : std::string_view();
        if (name == "-clamp") map.clamp = word != "off";
    } else {
        return false;
    }
    text = behind;
    return true;
}

/** Reads options and returns what stands behind them. */
std::string_view TakeOptions(std::string_view line, CMap& map) {
    CObjText text(line);
    while (TakeOption(text, map)) {
    }
    return text.Rest();
}

/** A picture's path below the model's folder, with slashes: packages keep pictures of one name in several
 * folders. The name alone where the path leads elsewhere or is longer than what a material holds. */
std::string PicturePath(std::string_view path) {
    constexpr std::size_t kMaxLength = 63;
    std::string name(path);
    std::replace(name.begin(), name.end(), '\\', '/');
    const bool absolute = name.starts_with('/') || (name.size() > 1 && name[1] == ':');
    const std::size_t upwards = ("/" + name).rfind("/../");
    if (upwards != std::string::npos) name.erase(0, upwards + 3);
    if (absolute || name.size() > kMaxLength) name.erase(0, name.rfind('/') + 1);
    return name;
}

void ReadValue(CObjText& text, CMap& to) {
    CMap map;
    std::string_view name = TakeOptions(text.Rest(), map);
    for (std::size_t at = name.find(" -"); at != std::string_view::npos; at = name.find(" -", at + 1)) {
        CObjText options(name.substr(at));
        if (!TakeOption(options, map)) continue;
        (void)TakeOptions(options.Rest(), map);
        name = ascii_text::Trimmed(name.substr(0, at));
    }
    if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
    map.path = PicturePath(name);
    if (!map.path.empty()) to = map;
}

void ReadValue(CObjText& text, std::optional<CVec3>& to) {
    const std::optional<float> r = TakeNumber(text), g = TakeNumber(text), b = TakeNumber(text);
    if (r) to = b ? CVec3{*r, *g, *b} : CVec3{*r, *r, *r};
}

void ReadValue(CObjText& text, std::optional<float>& to) {
    CObjText behind = text;
    if (behind.ToWord() && behind.Word() == "-halo") text = behind;
    if (const std::optional<float> number = TakeNumber(text)) to = number;
}

CValues ReadValues(std::string_view all) {
    CValues values;
    for (CObjText text(all); !text.AtEnd(); text.NextLine()) {
        if (!text.ToWord()) continue;
        const std::string word = ascii_text::Lowered(text.Word());
        const auto isNamed = [&word](const CKeyword& keyword) { return keyword.lower == word; };
        const auto* found = std::find_if(kKeywords.begin(), kKeywords.end(), isNamed);
        if (found == kKeywords.end()) continue;
        std::visit([&](auto member) { ReadValue(text, values.*member); }, found->value);
    }
    return values;
}

// ---- what becomes of it

float Unit(float value) {
    return std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
}

void SetColor(Lib3dsRgba& to, CVec3 rgb) {
    to[0] = Unit(rgb.x);
    to[1] = Unit(rgb.y);
    to[2] = Unit(rgb.z);
    to[3] = 1;
}

bool IsWhite(CVec3 rgb) {
    return rgb.x >= 1 && rgb.y >= 1 && rgb.z >= 1;
}

float Largest(const Lib3dsRgba& color) {
    return std::max({color[0], color[1], color[2]});
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

void SetMap(Lib3dsTextureMap& to, const CMap& from, float amount) {
    if (from.path.empty()) return;
    CopyName(to.name, from.path);
    to.percent = Unit(amount);
    to.flags = from.clamp ? LIB3DS_NO_TILE : 0;  // a new material's maps are not tiled
    SetAxis(to, 0, from.scale[0], from.offset[0]);
    SetAxis(to, 1, from.scale[1], from.offset[1]);
}

void SetMaps(Lib3dsMaterial& to, const CValues& from) {
    const CMap& color = from.diffuseMap.path.empty() ? from.ambientMap : from.diffuseMap;
    SetMap(to.texture1_map, color, 1);
    SetMap(to.opacity_map, from.opacityMap, 1);
    if (!color.path.empty() && from.opacityMap.path == color.path)
        to.opacity_map.flags |= LIB3DS_ALPHA_SOURCE;
    SetMap(to.specular_map, from.specularMap, 1);
    SetMap(to.shininess_map, from.exponentMap, 1);
    SetMap(to.self_illum_map, from.emissionMap, 1);
    SetMap(to.bump_map, from.bumpMap, from.bumpMap.bump[0]);
    const float mirror = Largest(to.specular);
    SetMap(to.reflection_map, from.reflectionMap, mirror > 0 ? mirror : 0.25f);
}

void SetValues(Lib3dsMaterial& to, const CValues& from) {
    if (from.diffuse) SetColor(to.diffuse, *from.diffuse);
    if (from.ambient && !IsWhite(*from.ambient)) {
        SetColor(to.ambient, *from.ambient);
    } else {
        std::copy_n(to.diffuse, 4, to.ambient);
    }
    SetColor(to.specular, from.specular.value_or(CVec3{}));
    const bool shines = Largest(to.specular) > 0 && from.illumination.value_or(2) >= 2;
    to.shin_strength = shines ? 1.0f : 0.0f;
    if (from.exponent) to.shininess = *from.exponent > 1 ? Unit(std::log2(*from.exponent) / 10) : 0.0f;
    const float transparency = from.transparency.value_or(0);
    to.transparency = from.dissolve ? Unit(1 - *from.dissolve) : transparency < 1 ? Unit(transparency) : 0;
    const CVec3 emission = from.emission.value_or(CVec3{});
    to.self_ilpct = std::max({Unit(emission.x), Unit(emission.y), Unit(emission.z)});
    to.self_illum = to.self_ilpct > 0;
}

}  // namespace

Lib3dsMaterial* MakeMtlMaterial(const std::string& name, std::optional<std::string_view> text) {
    const CValues values = ReadValues(text.value_or(std::string_view()));
    Lib3dsMaterial* material = lib3ds_material_new();
    if (!material) throw std::bad_alloc();
    CopyName(material->name, name);
    std::fill_n(material->diffuse, 3, kPlainGrey);
    std::fill_n(material->ambient, 3, kPlainGrey);
    material->two_sided = 1;
    if (!text) return material;
    SetValues(*material, values);
    SetMaps(*material, values);
    return material;
}
