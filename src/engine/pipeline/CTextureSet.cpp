// SPDX-License-Identifier: MIT
#include "engine/pipeline/CTextureSet.h"

#include <algorithm>
#include <set>

#include "engine/pipeline/CMaterialLook.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/material_kinds.h"

namespace {

/** Never read, or freed after it was uploaded. */
bool IsGone(const CImage& image) {
    return image.IsEmpty() || image.rgba.empty();
}

CImage Multiplied(CImage image) {
    for (std::size_t i = 0; i + 3 < image.rgba.size(); i += 4) {
        const unsigned alpha = image.rgba[i + 3] = CountedAlpha(image.rgba[i + 3]);
        for (std::size_t c = i; c < i + 3; ++c)
            image.rgba[c] = static_cast<std::uint8_t>((image.rgba[c] * alpha + 127) / 255);
    }
    return image;
}

CImage AsOpacity(CImage image) {
    for (std::size_t i = 0; i + 3 < image.rgba.size(); i += 4) {
        std::uint8_t* pixel = &image.rgba[i];
        std::fill_n(pixel, 3, CountedAlpha(GreyOf(pixel)));
        pixel[3] = CountedAlpha(pixel[3]);
    }
    return image;
}

}  // namespace

CTextureSet::CKey CTextureSet::KeyOf(EMapKind slot, const CPreparedMap& map) {
    const ETextureWrap going = map.mirror ? ETextureWrap::Mirror : ETextureWrap::Repeat;
    const bool weighs = slot == EMapKind::Texture ? map.decal || map.AlphaIsOpacity()
                                                  : slot == EMapKind::Texture2 && !map.ignoreAlpha;
    const EAlphaUse plain = slot == EMapKind::Opacity ? EAlphaUse::Opacity : EAlphaUse::Separate;
    return {map.texture, map.tile ? going : ETextureWrap::Clamp, weighs ? EAlphaUse::Multiplied : plain};
}

bool CTextureSet::IsOf(const CEntry& entry, const CPreparedTexture& source) {
    if (entry.reference != source.reference || entry.foundAt != source.foundAt) return false;
    if (IsGone(source.image)) return !entry.foundAt.empty();
    return entry.pixels == source.image.rgba.data() && entry.width == source.image.width &&
           entry.height == source.image.height;
}

void CTextureSet::Update(CGlCurrent& gl, const CGlCapabilities& can, const CPreparedScene& scene) {
    std::set<CKey> used;
    for (const CPreparedMaterial& material : scene.materials) {
        const std::array<const CPreparedMap*, kMapKinds> maps = MapsOf(material);
        for (std::size_t i = 0; i < maps.size(); ++i) {
            if (!maps[i]->HasEffect() || static_cast<std::size_t>(maps[i]->texture) >= scene.textures.size())
                continue;
            used.insert(KeyOf(static_cast<EMapKind>(i), *maps[i]));
        }
    }
    std::erase_if(m_textures, [&](const auto& item) {
        return !used.contains(item.first) ||
               !IsOf(item.second, scene.textures[static_cast<std::size_t>(std::get<int>(item.first))]);
    });
    for (const CKey& key : used) {
        const CPreparedTexture& source = scene.textures[static_cast<std::size_t>(std::get<int>(key))];
        const CImage& image = source.image;
        if (m_textures.contains(key) || IsGone(image)) continue;
        CEntry& entry = m_textures[key];
        entry = {source.reference, source.foundAt, image.rgba.data(), image.width, image.height, {}};
        const EAlphaUse use = std::get<EAlphaUse>(key);
        const bool multiply = source.hasTranslucency && use == EAlphaUse::Multiplied;
        entry.texture.Fill(gl, can,
                           multiply                    ? Multiplied(image)
                           : use == EAlphaUse::Opacity ? AsOpacity(image)
                                                       : image,
                           std::get<ETextureWrap>(key));
    }
}

bool CTextureSet::Has(EMapKind slot, const CPreparedMap& map) const {
    return m_textures.contains(KeyOf(slot, map));
}

CGlTexture* CTextureSet::Find(EMapKind slot, const CPreparedMap& map) {
    const auto found = m_textures.find(KeyOf(slot, map));
    return found == m_textures.end() ? nullptr : &found->second.texture;
}

std::size_t CTextureSet::Bytes() const {
    std::size_t sum = 0;
    for (const auto& [key, entry] : m_textures) sum += entry.texture.Bytes();
    return sum;
}
