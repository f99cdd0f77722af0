// SPDX-License-Identifier: MIT
#include "engine/CTextureSet.h"

#include <set>

#include "engine/CMaterialLook.h"
#include "model/CPreparedScene.h"

CTextureSet::CKey CTextureSet::KeyOf(const CPreparedMap& map) {
    if (!map.tile) return {map.texture, ETextureWrap::Clamp};
    return {map.texture, map.mirror ? ETextureWrap::Mirror : ETextureWrap::Repeat};
}

bool CTextureSet::IsOf(const CEntry& entry, const CPreparedTexture& source) {
    if (entry.reference != source.reference || entry.foundAt != source.foundAt) return false;
    if (source.image.IsEmpty()) return !entry.foundAt.empty();
    return entry.pixels == source.image.rgba.data() && entry.width == source.image.width &&
           entry.height == source.image.height;
}

void CTextureSet::Update(CGlCurrent& gl, const CGlCapabilities& can, const CPreparedScene& scene) {
    std::set<CKey> used;
    for (const CPreparedMaterial& material : scene.materials) {
        for (const CPreparedMap* map : MapsOf(material)) {
            if (map->HasEffect() && static_cast<std::size_t>(map->texture) < scene.textures.size()) {
                used.insert(KeyOf(*map));
            }
        }
    }
    std::erase_if(m_textures, [&](const auto& item) {
        return !used.contains(item.first) ||
               !IsOf(item.second, scene.textures[static_cast<std::size_t>(item.first.first)]);
    });
    for (const CKey& key : used) {
        const CPreparedTexture& source = scene.textures[static_cast<std::size_t>(key.first)];
        const CImage& image = source.image;
        if (m_textures.contains(key) || image.IsEmpty()) continue;
        CEntry& entry = m_textures[key];
        entry = {source.reference, source.foundAt, image.rgba.data(), image.width, image.height, {}};
        entry.texture.Fill(gl, can, image, key.second);
    }
}

bool CTextureSet::Has(const CPreparedMap& map) const { return m_textures.contains(KeyOf(map)); }

CGlTexture* CTextureSet::Find(const CPreparedMap& map) {
    const auto found = m_textures.find(KeyOf(map));
    return found == m_textures.end() ? nullptr : &found->second.texture;
}

std::size_t CTextureSet::Bytes() const {
    std::size_t sum = 0;
    for (const auto& [key, entry] : m_textures) sum += entry.texture.Bytes();
    return sum;
}
