// SPDX-License-Identifier: MIT
#include "model/textures/CTextureFolders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>

#include "base/text/ascii_text.h"

namespace fs = std::filesystem;

namespace {

// 20,000 entries and 64 folders take about 15 ms from the system's cache.
constexpr std::size_t kMaxModelFolderEntries = 10'000;
constexpr std::size_t kMaxFolderEntries = 2'000;
constexpr std::size_t kMaxEntries = 20'000;
constexpr std::size_t kMaxEntriesBelow = 14'000;  // the rest is for the folders upwards
constexpr std::size_t kMaxPlaces = 64;
constexpr std::size_t kMaxDepth = 2;
// Games keep units/tank/tank.3ds beside textures/ some folders up; loose pictures lie at most one up.
constexpr std::size_t kMaxLevelsUp = 4;
constexpr std::size_t kMaxLevelsUpLoose = 2;

constexpr std::array<std::string_view, 20> kUsualNames{
    "textures", "texture",   "maps",     "map",     "images", "image", "img",
    "tex",      "materials", "material", "bitmaps", "bitmap", "skins", "skin",
    "pictures", "pics",      "graphics", "sprites", "gfx",    "bmp"};

bool IsRegularFile(const fs::path& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

std::optional<unsigned long long> DeviceOfFolder(const fs::path& path) {
    struct stat info {};
    if (::fstatat(AT_FDCWD, path.c_str(), &info, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0)
        return std::nullopt;
    if (!S_ISDIR(info.st_mode)) return std::nullopt;
    return info.st_dev;
}

bool IsFolder(const fs::path& path) {
    struct stat info {};
    return ::fstatat(AT_FDCWD, path.c_str(), &info, AT_NO_AUTOMOUNT) == 0 && S_ISDIR(info.st_mode);
}

/** For folders with more entries than we list: the spellings that are likely on a disk. */
std::vector<std::string> LikelySpellings(const std::string& name) {
    return {name, ascii_text::Lowered(name), ascii_text::Uppered(name)};
}

struct CDirCloser {
    void operator()(DIR* dir) const { ::closedir(dir); }
};

}  // namespace

CTextureFolders::CTextureFolders(const fs::path& modelFolder) {
    std::error_code error;
    m_modelFolder = fs::absolute(modelFolder.empty() ? "." : modelFolder, error).lexically_normal();
    if (error) m_modelFolder = modelFolder;
    if (!m_modelFolder.has_filename()) m_modelFolder = m_modelFolder.parent_path();
    m_ancestor = m_modelFolder;
    m_device = DeviceOfFolder(m_modelFolder).value_or(0);
}

std::optional<fs::path> CTextureFolders::Find(const CTextureQuery& query) {
    if (query.base.empty() || m_modelFolder.empty()) return std::nullopt;
    const std::lock_guard lock(m_mutex);
    for (const ETextureMatch match :
         {ETextureMatch::Name, ETextureMatch::OtherExtension, ETextureMatch::Truncated}) {
        if (!query.absolute) {
            if (auto found = FindOnWay(query, match)) return found;
        }
        for (std::size_t i = 0; CFolder* folder = Place(i); ++i) {
            if (auto found = FindIn(*folder, query, match)) return found;
            if (i != 0 || match != ETextureMatch::Name || !query.absolute) continue;
            if (auto found = FindOnWay(query, match)) return found;
        }
    }
    return std::nullopt;
}

std::optional<fs::path> CTextureFolders::FindBesideModel(const CTextureQuery& query) {
    if (query.base.empty() || m_modelFolder.empty()) return std::nullopt;
    const std::lock_guard lock(m_mutex);
    if (auto found = FindOnWay(query, ETextureMatch::Name)) return found;
    return FindIn(List(m_modelFolder), query, ETextureMatch::Name);
}

// The reference's own path below the model's folder; of C:\GAME\MAPS\A.TGA first game/maps/a.tga,
// then maps/a.tga.
std::optional<fs::path> CTextureFolders::FindOnWay(const CTextureQuery& query, ETextureMatch match) {
    for (std::size_t first = 0; first < query.folders.size(); ++first) {
        if (auto found = FindBelow(List(m_modelFolder), query, first, match)) return found;
    }
    return std::nullopt;
}

std::optional<fs::path> CTextureFolders::FindBelow(CFolder& folder, const CTextureQuery& query,
                                                   std::size_t step, ETextureMatch match) {
    if (step == query.folders.size()) return FindIn(folder, query, match);
    for (const std::size_t number : folder.folders.FindKeys(query.folders[step])) {
        if (auto found = FindBelow(List(folder.path / folder.folders.Name(number)), query, step + 1, match))
            return found;
    }
    return std::nullopt;
}

std::optional<fs::path> CTextureFolders::FindIn(CFolder& folder, const CTextureQuery& query,
                                                ETextureMatch match) const {
    for (const std::size_t number : folder.files.Find(query, match)) {
        fs::path path = folder.path / folder.files.Name(number);
        if (IsRegularFile(path)) return path;
    }
    if (folder.complete || match != ETextureMatch::Name) return std::nullopt;
    for (const std::string& name : LikelySpellings(query.base)) {
        fs::path path = folder.path / name;
        if (IsRegularFile(path)) return path;
    }
    return std::nullopt;
}

CTextureFolders::CFolder& CTextureFolders::List(const fs::path& path) {
    auto& slot = m_listed[path.native()];
    if (slot) return *slot;
    slot = std::make_unique<CFolder>();
    slot->path = path;
    const std::unique_ptr<DIR, CDirCloser> dir(::opendir(path.c_str()));
    if (!dir) return *slot;
    const std::size_t limit = std::min(path == m_modelFolder ? kMaxModelFolderEntries : kMaxFolderEntries,
                                       kMaxEntries - std::min(kMaxEntries, m_listedEntries));
    std::size_t count = 0;
    while (const dirent* entry = ::readdir(dir.get())) {
        if (count == limit) {
            slot->complete = false;
            break;
        }
        ++count;
        if (entry->d_name[0] == '.') continue;
        const bool unclear = entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN;
        const bool folder = unclear ? IsFolder(path / entry->d_name) : entry->d_type == DT_DIR;
        if (folder) {
            slot->folders.Add(entry->d_name);
        } else if (unclear || entry->d_type == DT_REG) {
            slot->files.Add(entry->d_name);
        }
    }
    m_listedEntries += count;
    return *slot;
}

CTextureFolders::CFolder* CTextureFolders::Place(std::size_t number) {
    while (number >= m_places.size() && m_stage != EStage::Done) AddMorePlaces();
    return number < m_places.size() ? m_places[number] : nullptr;
}

void CTextureFolders::AddMorePlaces() {
    switch (m_stage) {
        case EStage::Model:
            AddPlace(m_modelFolder);
            m_stage = EStage::Usual;
            break;
        case EStage::Usual:
            AddUsualSubFolders(List(m_modelFolder));
            m_stage = EStage::Others;
            break;
        case EStage::Others:
            AddOtherSubFolders();
            m_stage = EStage::Upwards;
            break;
        case EStage::Upwards:
            m_ancestor = m_ancestor.parent_path();
            if (m_levelsUp == kMaxLevelsUp || !m_ancestor.has_relative_path()) {
                m_stage = EStage::Done;
                break;
            }
            ++m_levelsUp;
            AddUsualSubFolders(List(m_ancestor));
            if (m_levelsUp <= kMaxLevelsUpLoose) AddPlace(m_ancestor);
            break;
        case EStage::Done:
            break;
    }
}

void CTextureFolders::AddPlace(const fs::path& path) {
    CFolder* folder = &List(path);
    if (std::find(m_places.begin(), m_places.end(), folder) == m_places.end()) m_places.push_back(folder);
}

void CTextureFolders::AddUsualSubFolders(CFolder& parent) {
    for (const std::string_view usual : kUsualNames) {
        for (const std::size_t number : parent.folders.FindKeys({std::string(usual)})) {
            AddPlace(parent.path / parent.folders.Name(number));
        }
    }
    if (parent.complete) return;
    for (const std::string_view usual : kUsualNames) {
        for (const std::string& name : LikelySpellings(std::string(usual))) {
            if (IsFolder(parent.path / name)) AddPlace(parent.path / name);
        }
    }
}

void CTextureFolders::AddOtherSubFolders() {
    std::vector<fs::path> level{m_modelFolder};
    for (std::size_t depth = 0; depth < kMaxDepth; ++depth) {
        std::vector<fs::path> next;
        for (const fs::path& parent : level) {
            CFolder& folder = List(parent);
            std::vector<std::string> names;
            for (std::size_t i = 0; i < folder.folders.Size(); ++i) names.push_back(folder.folders.Name(i));
            std::sort(names.begin(), names.end());
            for (const std::string& name : names) {
                if (m_places.size() >= kMaxPlaces || m_listedEntries >= kMaxEntriesBelow) return;
                const fs::path path = parent / name;
                if (!MayEnter(path)) continue;
                AddPlace(path);
                next.push_back(path);
            }
        }
        level = std::move(next);
    }
}

// A link may lead anywhere, and another file system may be a slow network or /proc.
bool CTextureFolders::MayEnter(const fs::path& folder) const {
    return DeviceOfFolder(folder) == m_device;
}
