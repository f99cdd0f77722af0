// SPDX-License-Identifier: MIT
#include "model/textures/CTextureFolders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

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
// What references may ask for beyond the tables, in all: names in folders too large to list, folders on their ways.
constexpr std::size_t kMaxGuesses = 20'000;
constexpr std::size_t kMaxStepsOnWays = 100'000;

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
using CDirPtr = std::unique_ptr<DIR, CDirCloser>;

CDirPtr OpenFolder(const fs::path& path) {
    const int handle = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    CDirPtr dir(handle < 0 ? nullptr : ::fdopendir(handle));
    if (handle >= 0 && !dir) ::close(handle);
    return dir;
}

}  // namespace

CTextureFolders::CTextureFolders(const fs::path& modelFolder, std::size_t levelsUp)
    : m_surroundings(modelFolder) {
    const std::vector<fs::path>& above = m_surroundings.Above();
    if (levelsUp == 0) {
        m_folder = m_surroundings.Folder();
    } else if (levelsUp <= above.size()) {
        m_surroundings = CModelSurroundings(above[levelsUp - 1]);
        m_folder = m_surroundings.Folder();
    }
}

std::optional<fs::path> CTextureFolders::Find(const CTextureQuery& query) {
    if (query.base.empty() || m_folder.empty()) return std::nullopt;
    const std::lock_guard lock(m_mutex);
    for (const ETextureMatch match :
         {ETextureMatch::Name, ETextureMatch::OtherExtension, ETextureMatch::Truncated}) {
        auto found = FindMatch(query, match);
        if (!found) continue;
        const auto twin = m_surroundings.File(texture_name::WithAlpha(found->native()));
        return twin ? twin : found;
    }
    return std::nullopt;
}

std::optional<fs::path> CTextureFolders::FindBesideModel(const CTextureQuery& query) {
    if (query.base.empty() || m_folder.empty()) return std::nullopt;
    const std::lock_guard lock(m_mutex);
    if (auto found = FindOnWay(query, ETextureMatch::Name)) return found;
    return FindIn(List(m_folder), query, ETextureMatch::Name);
}

// An absolute path's end comes after the picture beside the model, a relative path before it.
CTextureFolders::CFound CTextureFolders::FindMatch(const CTextureQuery& query, ETextureMatch match) {
    if (!query.absolute) {
        if (auto found = FindOnWay(query, match)) return found;
    }
    if (m_places.empty()) AddMorePlaces();
    if (auto found = FindInPlaces(query, match, 0, 1)) return found;
    if (query.absolute && match == ETextureMatch::Name) {
        if (auto found = FindOnWay(query, match)) return found;
    }
    while (true) {
        if (auto found = FindInPlaces(query, match, 1, m_places.size())) return found;
        if (m_stage == EStage::Done) return std::nullopt;
        AddMorePlaces();
    }
}

CTextureFolders::CFound CTextureFolders::FindInPlaces(const CTextureQuery& query, ETextureMatch match,
                                                      std::size_t first, std::size_t last) {
    const auto guessUpTo = [&](std::size_t end) -> CFound {
        for (; first < end; ++first) {
            if (auto found = Guess(*m_places[first], query, match)) return found;
        }
        return std::nullopt;
    };
    for (const std::size_t number : m_names.Find(query, match)) {
        const std::size_t place = m_names.PlaceOf(number);
        if (place < first || place >= last) continue;
        if (auto found = guessUpTo(place)) return found;
        if (const CFound& found = FileNumber(number)) return found;
    }
    return guessUpTo(last);
}

const CTextureFolders::CFound& CTextureFolders::FileNumber(std::size_t number) {
    const auto [checked, isNew] = m_checked.try_emplace(number);
    if (isNew)
        checked->second = m_surroundings.File(m_places[m_names.PlaceOf(number)]->path / m_names.Name(number));
    return checked->second;
}

// The reference's own path below the model's folder; of C:\GAME\MAPS\A.TGA first game/maps/a.tga,
// then maps/a.tga.
CTextureFolders::CFound CTextureFolders::FindOnWay(const CTextureQuery& query, ETextureMatch match) {
    for (std::size_t first = 0; first < query.folders.size(); ++first) {
        if (auto found = FindBelow(List(m_folder), query, first, match)) return found;
    }
    return std::nullopt;
}

CTextureFolders::CFound CTextureFolders::FindBelow(CFolder& folder, const CTextureQuery& query,
                                                   std::size_t step, ETextureMatch match) {
    if (step == query.folders.size()) return FindIn(folder, query, match);
    for (const std::size_t number : folder.folders.FindKeys(query.folders[step])) {
        if (++m_stepsOnWays > kMaxStepsOnWays) return std::nullopt;
        CFolder* const next = Enter(folder.path / folder.folders.Name(number));
        if (next == nullptr) continue;
        if (auto found = FindBelow(*next, query, step + 1, match)) return found;
    }
    return std::nullopt;
}

CTextureFolders::CFound CTextureFolders::FindIn(CFolder& folder, const CTextureQuery& query,
                                                ETextureMatch match) {
    if (!folder.names) {
        folder.names = std::make_unique<CTextureNames>();
        for (const std::string& file : folder.files) folder.names->Add(file);
    }
    for (const std::size_t number : folder.names->Find(query, match)) {
        if (auto found = m_surroundings.File(folder.path / folder.names->Name(number))) return found;
    }
    return Guess(folder, query, match);
}

CTextureFolders::CFound CTextureFolders::Guess(const CFolder& folder, const CTextureQuery& query,
                                               ETextureMatch match) {
    if (folder.complete || match != ETextureMatch::Name) return std::nullopt;
    for (const std::string& name : LikelySpellings(query.base)) {
        if (++m_guesses > kMaxGuesses) return std::nullopt;
        if (auto found = m_surroundings.File(folder.path / name)) return found;
    }
    return std::nullopt;
}

CTextureFolders::CFolder& CTextureFolders::List(const fs::path& path) {
    auto& slot = m_listed[path.native()];
    if (!slot) {
        slot = std::make_unique<CFolder>();
        slot->path = path;
        ReadEntries(*slot);
    }
    return *slot;
}

CTextureFolders::CFolder* CTextureFolders::Enter(const fs::path& path) {
    const auto [entered, isNew] = m_entered.try_emplace(path.native(), nullptr);
    if (isNew) {
        if (const auto folder = m_surroundings.SubFolder(path)) entered->second = &List(*folder);
    }
    return entered->second;
}

void CTextureFolders::ReadEntries(CFolder& folder) {
    const std::size_t most = folder.path == m_folder ? kMaxModelFolderEntries : kMaxFolderEntries;
    const std::size_t limit = std::min(most, kMaxEntries - std::min(kMaxEntries, m_listedEntries));
    if (limit == 0) return;
    const CDirPtr dir = OpenFolder(folder.path);
    if (!dir) return;
    std::vector<std::string> folders;
    std::size_t count = 0;
    while (const dirent* entry = ::readdir(dir.get())) {
        if (count == limit) {
            folder.complete = false;
            break;
        }
        ++count;
        if (entry->d_name[0] == '.') continue;
        const bool unclear = entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN;
        if (unclear ? IsFolder(folder.path / entry->d_name) : entry->d_type == DT_DIR) {
            folders.emplace_back(entry->d_name);
        } else if (unclear || entry->d_type == DT_REG) {
            folder.files.emplace_back(entry->d_name);
        }
    }
    m_listedEntries += count;
    // The system lists them in any order; what is found must not depend on it.
    std::sort(folder.files.begin(), folder.files.end());
    std::sort(folders.begin(), folders.end());
    for (const std::string& name : folders) folder.folders.Add(name);
}

void CTextureFolders::AddMorePlaces() {
    switch (m_stage) {
        case EStage::Model:
            AddPlace(m_folder);
            m_stage = EStage::Usual;
            break;
        case EStage::Usual:
            AddUsualSubFolders(List(m_folder));
            m_stage = EStage::Others;
            break;
        case EStage::Others:
            if (m_surroundings.OwnsFoldersBeside()) AddOtherSubFolders();
            m_stage = EStage::Upwards;
            break;
        case EStage::Upwards:
            if (m_levelsUp == m_surroundings.Above().size()) {
                m_stage = EStage::Done;
            } else {
                AddUsualSubFolders(List(m_surroundings.Above()[m_levelsUp++]));
            }
            break;
        case EStage::Done:
            break;
    }
}

void CTextureFolders::AddPlace(const fs::path& path) {
    CFolder& folder = List(path);
    if (folder.isPlace || m_places.size() == 2 * kMaxPlaces) return;
    folder.isPlace = true;
    for (const std::string& file : folder.files) m_names.Add(file, m_places.size());
    m_places.push_back(&folder);
}

void CTextureFolders::AddUsualSubFolders(CFolder& parent) {
    const std::size_t count = m_surroundings.PictureFolderCount(parent.path);
    const auto add = [&](const std::string& name) {
        if (const auto folder = m_surroundings.SubFolder(parent.path / name)) AddPlace(*folder);
    };
    for (std::size_t i = 0; i < count; ++i) {
        const std::string usual(kPictureFolders[i]);
        for (const std::size_t number : parent.folders.FindKeys({usual})) add(parent.folders.Name(number));
        if (parent.complete) continue;
        for (const std::string& name : LikelySpellings(usual)) add(name);
    }
}

void CTextureFolders::AddOtherSubFolders() {
    std::vector<fs::path> level{m_folder};
    for (std::size_t depth = 0; depth < kMaxDepth; ++depth) {
        std::vector<fs::path> next;
        for (const fs::path& parent : level) {
            const CTextureNames& names = List(parent).folders;
            for (std::size_t i = 0; i < names.Size(); ++i) {
                if (m_places.size() >= kMaxPlaces || m_listedEntries >= kMaxEntriesBelow) return;
                const fs::path path = parent / names.Name(i);
                if (m_surroundings.SubFolder(path) != path)
                    continue;  // not through links: they may lead round
                AddPlace(path);
                next.push_back(path);
            }
        }
        level = std::move(next);
    }
}
