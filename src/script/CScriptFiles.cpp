// SPDX-License-Identifier: MIT
#include "script/CScriptFiles.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "base/text/ascii_text.h"
#include "files/file_util_ex.h"
#include "model/textures/texture_name.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostPathBytes = 4096;  // the system's own limit
constexpr std::size_t kMostListedEntries = 50'000;
constexpr std::size_t kMostInFolder = 10'000;
constexpr std::size_t kMostLookUps = 20'000;
constexpr std::size_t kMostSteps = 300'000;  // from a folder to what is in it, all paths together
constexpr std::size_t kMostPlaces = 32;
constexpr std::uintmax_t kMostBytes = 128 << 20;

std::string_view Unquoted(std::string_view text) {
    text = ascii_text::Trimmed(text);
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
    return ascii_text::Trimmed(text);
}

std::string WithSlashes(std::string_view text) {
    std::string path(text);
    for (char& c : path) c = c == '\\' ? '/' : c;
    return path;
}

/** True for "C:/..." and "//host/...", which name nothing here. */
bool IsOfOtherComputer(std::string_view path) {
    return path.starts_with("//") || (path.size() > 1 && path[1] == ':');
}

/** What the path has below the root, the drive or the host. */
std::string_view BelowRoot(std::string_view path) {
    if (path.size() > 1 && path[1] == ':') path.remove_prefix(2);
    const std::size_t first = path.find_first_not_of('/');
    return first == path.npos ? std::string_view() : path.substr(first);
}

}  // namespace

CScriptFiles::CPlace::CPlace(const std::string& file)
    : surroundings(file_util_ex::GetFilePath(file)), locator(CTextureLocator::BesideModel(file)) {}

// --- anywhere --------------------------------------------------------------------------------------------

std::optional<std::string> CScriptFiles::Find(const std::string& folder, std::string_view written) {
    if (written.empty() || ++m_lookUps > kMostLookUps || !MayFollow(written)) return std::nullopt;
    const std::string_view plain = Unquoted(written);
    const std::string slashed = WithSlashes(plain);
    for (const std::string_view path : {written, plain, std::string_view(slashed)}) {
        std::string exact = file_util_ex::MakeAbsolute(folder, path);
        if (file_util_ex::DoesFileExist(exact)) return exact;
    }
    const bool isForeign = IsOfOtherComputer(slashed);
    if (!isForeign) {
        const bool isAbsolute = slashed.starts_with('/');
        if (auto found = Walk(isAbsolute ? "/" : folder, isAbsolute ? BelowRoot(slashed) : slashed))
            return found;
        if (!isAbsolute) return std::nullopt;
    }
    // Of a path on another computer its end may be here: game/maps/a.3ds, maps/a.3ds, a.3ds.
    std::string_view end = BelowRoot(slashed);
    while (!end.empty()) {
        if (auto found = Walk(folder, end)) return found;
        const std::size_t slash = end.find('/');
        end = slash == end.npos ? std::string_view() : BelowRoot(end.substr(slash));
    }
    return std::nullopt;
}

std::string CScriptFiles::Unfound(const std::string& folder, std::string_view written) {
    if (MayFollow(written)) return file_util_ex::MakeAbsolute(folder, written);
    return file_util_ex::MakePath(folder, written.substr(0, kMostPathBytes));
}

bool CScriptFiles::MayFollow(std::string_view path) {
    if (path.size() > kMostPathBytes) return false;
    const auto isSlash = [](char c) { return c == '/' || c == '\\'; };
    const auto parts = static_cast<std::size_t>(std::ranges::count_if(path, isSlash)) + 1;
    // A step back looks at the whole way to it.
    constexpr std::size_t kSpellings = 3, kBytesOfStep = 64;
    const bool goesBack = path.find("..") != path.npos;
    m_steps += kSpellings * parts * (goesBack ? 1 + path.size() / kBytesOfStep : 1);
    return m_steps <= kMostSteps;
}

std::optional<std::string> CScriptFiles::Walk(std::string folder, std::string_view path) {
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string name(path.substr(0, slash));
        path = slash == path.npos ? std::string_view() : path.substr(slash + 1);
        if (++m_steps > kMostSteps) return std::nullopt;
        if (name.empty() || name == ".") continue;
        if (name == "..") {
            folder = file_util_ex::MakeAbsolute(folder, name);
            continue;
        }
        auto next = FindEntry(folder, name, path.empty());
        if (!next) return std::nullopt;
        folder = std::move(*next);
    }
    if (!file_util_ex::DoesFileExist(folder)) return std::nullopt;
    return folder;
}

std::optional<std::string> CScriptFiles::FindEntry(const std::string& folder, const std::string& name,
                                                   bool isLast) {
    const auto isRight = [&](const std::string& path) {
        return isLast ? file_util_ex::DoesFileExist(path) : file_util_ex::DoesFolderExist(path);
    };
    std::string exact = file_util_ex::MakePath(folder, name);
    if (isRight(exact)) return exact;
    const CTextureNames& names = NamesIn(folder);
    for (const std::size_t number : names.FindKeys(texture_name::ReferenceKeys(name))) {
        std::string path = file_util_ex::MakePath(folder, names.Name(number));
        if (isRight(path)) return path;
    }
    return std::nullopt;
}

const CTextureNames& CScriptFiles::NamesIn(const std::string& folder) {
    const auto [listed, isNew] = m_listed.try_emplace(folder);
    if (!isNew) return listed->second;
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (names.size() == kMostInFolder || ++m_listedEntries > kMostListedEntries) break;
        names.push_back(entry->path().filename().native());
    }
    std::sort(names.begin(), names.end());  // what is found does not depend on the disk
    for (const std::string& name : names) listed->second.Add(name);
    return listed->second;
}

// --- pictures --------------------------------------------------------------------------------------------

const CScriptFiles::CPlace* CScriptFiles::PlaceOf(const std::string& file) {
    if (file.empty()) return nullptr;
    const auto known = m_places.find(file_util_ex::GetFilePath(file));
    if (known != m_places.end()) return known->second.get();
    if (m_places.size() == kMostPlaces) return nullptr;
    return m_places.emplace(file_util_ex::GetFilePath(file), std::make_unique<CPlace>(file))
        .first->second.get();
}

const CScriptFiles::CPlace* CScriptFiles::PlaceChosen(const std::string& file, const std::string& chooser) {
    const CPlace* place = PlaceOf(file);
    const CPlace* own = PlaceOf(chooser);
    if (!place || place->surroundings.OwnsFoldersBeside()) return place;
    // In a private folder lie papers beside the file, too.
    return own && own->surroundings.Folder() == place->surroundings.Folder() ? place : nullptr;
}

std::array<const CScriptFiles::CPlace*, 2> CScriptFiles::PlacesOf(const std::string& namingFile,
                                                                  const std::string& modelPath) {
    const CPlace* own = PlaceChosen(namingFile, m_script.empty() ? namingFile : m_script);
    // The script chose the path: what is no model would be a key to any folder.
    const bool isModel = !modelPath.empty() && file_util_ex::DoesFileExist(modelPath);
    return {own, isModel ? PlaceChosen(modelPath, own ? namingFile : m_script) : nullptr};
}

CScriptFiles::CPicture CScriptFiles::FindPicture(const std::string& namingFile, const std::string& modelPath,
                                                 std::string_view written) {
    const auto exact = Find(file_util_ex::GetFilePath(namingFile), written);
    const auto places = PlacesOf(namingFile, modelPath);
    const auto found = [&places](const fs::path& path) {
        CPicture picture{EPicture::Found, path.native(), true};
        for (const CPlace* place : places)
            if (place && place->surroundings.IsInFolder(path)) picture.isElsewhere = false;
        return picture;
    };
    for (const CPlace* place : places) {
        if (!place || !exact) continue;
        if (const auto path = place->surroundings.File(*exact)) return found(*path);
    }
    for (const CPlace* place : places) {
        if (!place || written.size() > kMostPathBytes || m_lookUps > kMostLookUps || m_steps > kMostSteps)
            continue;
        if (const auto hit = place->locator.Find(Unquoted(written))) return found(hit->foundAt);
    }
    return {exact ? EPicture::Outside : EPicture::Missing, {}, false};
}

bool CScriptFiles::MayRead(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    const bool isFirst = m_bytes == 0;
    m_bytes += error ? 0 : size + 1;
    return isFirst || m_bytes <= kMostBytes;
}

bool CScriptFiles::IsNear(const std::string& namingFile, const std::string& modelPath,
                          const std::string& path) {
    for (const CPlace* place : PlacesOf(namingFile, modelPath)) {
        if (place && place->surroundings.File(path)) return true;
    }
    return false;
}
