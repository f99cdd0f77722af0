// SPDX-License-Identifier: MIT
#include "model/textures/CLib3dsMatUtil.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <unordered_set>
#include <utility>

#include "files/file_util_ex.h"
#include "model/textures/texture_name.h"

namespace {

constexpr std::uint64_t kMaxTexture = 256'000'000;

struct CKnownTextures {
    std::mutex mutex;
    struct CEntry {
        CTextureLocator locator;
        unsigned long long number = 0;
    };
    std::map<const Lib3dsFile*, CEntry> entries;
    unsigned long long lastNumber = 0;
};

CKnownTextures& KnownTextures() {
    static CKnownTextures known;
    return known;
}

std::string NameFor(const std::string& reference, const std::string& foundAt) {
    std::string name = CTextureQuery(reference).base;
    const std::string foundExt = file_util_ex::GetFileExt(foundAt);
    const std::string nameKey = texture_name::FoldKey(name);
    if (foundExt.empty() || texture_name::Split(nameKey).ext == texture_name::FoldKey(foundExt)) return name;
    return file_util_ex::SetFileExt(name, foundExt);
}

}  // namespace

std::array<Lib3dsTextureMap*, 16> CLib3dsMatUtil::MapsOf(Lib3dsMaterial& m) {
    return {&m.texture1_map,   &m.texture1_mask,   &m.texture2_map,   &m.texture2_mask,
            &m.opacity_map,    &m.opacity_mask,    &m.bump_map,       &m.bump_mask,
            &m.specular_map,   &m.specular_mask,   &m.shininess_map,  &m.shininess_mask,
            &m.self_illum_map, &m.self_illum_mask, &m.reflection_map, &m.reflection_mask};
}

std::vector<std::string> CLib3dsMatUtil::MapNames(const Lib3dsFile& file) {
    std::vector<std::string> names;
    std::unordered_set<std::string> keys;
    for (Lib3dsMaterial* m = file.materials; m; m = m->next) {
        for (const Lib3dsTextureMap* map : MapsOf(*m)) {
            const std::string name(map->name, strnlen(map->name, sizeof map->name));
            if (!name.empty() && keys.insert(texture_name::FoldKey(name)).second) names.push_back(name);
        }
    }
    return names;
}

void CLib3dsMatUtil::GetMatTextures(Lib3dsFile* file, CImageDataTextVec& textures,
                                    const CTextureLocator& locator) {
    if (!file) return;
    for (const std::string& reference : MapNames(*file)) {
        const auto hit = locator.Find(reference);
        if (!hit) continue;
        std::string name = NameFor(reference, hit->foundAt);
        if (hit->data) {
            textures.push_back({std::move(name), *hit->data});
        } else if (auto bytes = file_util_ex::ReadWholeFile(hit->foundAt, kMaxTexture)) {
            textures.push_back({std::move(name), std::move(bytes).Value()});
        }
    }
}

void CLib3dsMatUtil::GetMatTextures(Lib3dsFile* file, CImageDataTextVec& textures) {
    GetMatTextures(file, textures, CTexturesOfScene::Find(file));
}

CTextureLocator CTexturesOfScene::Find(const Lib3dsFile* file) {
    CKnownTextures& known = KnownTextures();
    const std::lock_guard lock(known.mutex);
    const auto entry = known.entries.find(file);
    return entry == known.entries.end() ? CTextureLocator() : entry->second.locator;
}

CTexturesOfScene::CTexturesOfScene(const Lib3dsFile* file, CTextureLocator locator) : m_file(file) {
    CKnownTextures& known = KnownTextures();
    const std::lock_guard lock(known.mutex);
    m_number = ++known.lastNumber;
    known.entries[file] = {std::move(locator), m_number};
}

CTexturesOfScene::CTexturesOfScene(CTexturesOfScene&& other) noexcept
    : m_file(std::exchange(other.m_file, nullptr)), m_number(other.m_number) {}

CTexturesOfScene& CTexturesOfScene::operator=(CTexturesOfScene&& other) noexcept {
    CTexturesOfScene old(std::move(*this));
    m_file = std::exchange(other.m_file, nullptr);
    m_number = other.m_number;
    return *this;
}

CTexturesOfScene::~CTexturesOfScene() {
    if (!m_file) return;
    CKnownTextures& known = KnownTextures();
    const std::lock_guard lock(known.mutex);
    const auto entry = known.entries.find(m_file);
    if (entry != known.entries.end() && entry->second.number == m_number) known.entries.erase(entry);
}
