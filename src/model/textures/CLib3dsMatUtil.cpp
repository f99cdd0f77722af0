// SPDX-License-Identifier: MIT
#include "model/textures/CLib3dsMatUtil.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <utility>

#include "base/name_hash.h"
#include "base/text/code_pages.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"
#include "model/textures/texture_name.h"

namespace {

constexpr std::uint64_t kMaxTexture = 256'000'000;

template <std::size_t size>
std::string_view TextIn(const char (&field)[size]) {
    return {field, strnlen(field, size)};
}

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

/** The names of the materials that at least one face has. */
CNameSet MaterialsOfFaces(const Lib3dsFile& file) {
    CNameSet names;
    for (const Lib3dsMesh* mesh = file.meshes; mesh; mesh = mesh->next) {
        std::string_view last;
        for (Lib3dsDword i = 0; i < mesh->faces && mesh->faceL; ++i) {
            const std::string_view name = TextIn(mesh->faceL[i].material);
            if (name == last) continue;
            last = name;
            if (!names.contains(name)) names.emplace(name);
        }
    }
    return names;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/** The text of a name in unknown bytes. */
std::string Readable(std::string_view name) {
    constexpr std::size_t kWestern = 2;  // of code_pages
    if (utf8_text::Decode(name)) return std::string(name);
    std::string text;
    for (const char32_t c : code_pages::Decode(name, kWestern)) utf8_text::Append(text, c);
    return text;
}

/** Without what some system does not allow in a file name. */
std::string Sound(std::string name) {
    for (char& c : name) {
        if (static_cast<unsigned char>(c) < 0x20 ||
            std::string_view("\x7F\"*/:<>?\\|").find(c) != std::string::npos)
            c = '_';
    }
    if (name.starts_with('.') || name.starts_with('-')) name.front() = '_';
    return name;
}

/** A name in old bytes is taken from what was found by it: which code page it is in is known there alone. */
std::string NameFor(const std::string& reference, const std::string& foundAt) {
    const std::string foundName = file_util_ex::GetFileName(foundAt);
    std::string name = CTextureQuery(reference).base;
    if (!IsAscii(name)) name = Readable(foundName);
    name = Sound(std::move(name));
    const std::string foundExt = file_util_ex::GetFileExt(foundName);
    const std::string nameKey = texture_name::FoldKey(name);
    if (foundExt.empty() || texture_name::Split(nameKey).ext == texture_name::FoldKey(foundExt)) return name;
    return file_util_ex::SetFileExt(name, Sound(Readable(foundExt)));
}

/** What tells one found picture from another. */
std::string PlaceOf(const CTextureHit& hit) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(hit.data)) + ' ' + hit.foundAt;
}

}  // namespace

std::array<Lib3dsTextureMap*, 16> CLib3dsMatUtil::MapsOf(Lib3dsMaterial& m) {
    return {&m.texture1_map,   &m.texture1_mask,   &m.texture2_map,   &m.texture2_mask,
            &m.opacity_map,    &m.opacity_mask,    &m.bump_map,       &m.bump_mask,
            &m.specular_map,   &m.specular_mask,   &m.shininess_map,  &m.shininess_mask,
            &m.self_illum_map, &m.self_illum_mask, &m.reflection_map, &m.reflection_mask};
}

std::vector<CScenePicture> CLib3dsMatUtil::PicturesOf(const Lib3dsFile& file,
                                                      const CTextureLocator& locator) {
    const CNameSet used = MaterialsOfFaces(file);
    CNameSet asked;
    CNameMap<std::size_t> numbers;
    std::vector<CScenePicture> pictures;
    for (Lib3dsMaterial* m = file.materials; m; m = m->next) {
        if (!used.contains(TextIn(m->name))) continue;
        for (const Lib3dsTextureMap* map : MapsOf(*m)) {
            const std::string reference(TextIn(map->name));
            if (reference.empty() || !asked.insert(reference).second) continue;
            auto hit = locator.Find(reference);
            if (!hit) continue;
            const auto [number, isNew] = numbers.emplace(PlaceOf(*hit), pictures.size());
            if (isNew) pictures.push_back({{}, NameFor(reference, hit->foundAt), std::move(*hit)});
            pictures[number->second].references.push_back(reference);
        }
    }
    return pictures;
}

void CLib3dsMatUtil::GetMatTextures(Lib3dsFile* file, CImageDataTextVec& textures,
                                    const CTextureLocator& locator) {
    if (!file) return;
    CNameSet names;
    std::uint64_t left = kMostTextureBytes;
    for (CScenePicture& picture : PicturesOf(*file, locator)) {
        if (!names.insert(texture_name::FoldKey(picture.name)).second) {
            const std::string folder = CTextureQuery(picture.references.front()).lastFolder;
            if (!folder.empty()) picture.name = Sound(Readable(folder)) + '/' + picture.name;
        }
        auto bytes = ReadTexture(picture.hit, std::min(left, kMaxTexture));
        if (!bytes) continue;
        left -= bytes.Value().size();
        textures.push_back({std::move(picture.name), std::move(bytes).Value()});
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
