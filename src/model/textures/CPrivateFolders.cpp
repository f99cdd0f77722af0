// SPDX-License-Identifier: MIT
#include "model/textures/CPrivateFolders.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <string_view>

#include "base/text/ascii_text.h"
#include "files/file_util_ex.h"

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 8> kDesktopFolders{"Desktop",  "Downloads", "Documents", "Music",
                                                          "Pictures", "Videos",    "Templates", "Public"};
constexpr std::array<const char*, 10> kSystemFolders{"/",        "/home",     "/root",  "/tmp", "/var/tmp",
                                                     "/dev/shm", "/run/user", "/media", "/mnt", "/run/media"};
/** What the answer depends on; the first three have parts of their own below. */
constexpr std::array<const char*, 6> kVariables{"HOME", "XDG_CONFIG_HOME", "TMPDIR", "TMP",
                                                "TEMP", "XDG_RUNTIME_DIR"};
constexpr std::uint64_t kMaxListBytes = 64 << 10;

std::vector<std::string> CurrentVariables() {
    std::vector<std::string> values;
    for (const char* name : kVariables) {
        const char* value = std::getenv(name);
        values.emplace_back(value == nullptr ? "" : value);
    }
    return values;
}

std::string HomeInTheSystemsList() {
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return {};
    return entry.pw_dir;
}

/** The folder that a line of user-dirs.dirs names: XDG_PICTURES_DIR="$HOME/Bilder". */
std::optional<fs::path> FolderOfLine(std::string_view line, const fs::path& home) {
    constexpr std::string_view kHome = "$HOME";
    line = ascii_text::Trimmed(line, " \t\r");
    const std::size_t equals = line.find('=');
    if (!line.starts_with("XDG_") || equals == line.npos) return std::nullopt;
    std::string value;
    for (const char c : ascii_text::Trimmed(line.substr(equals + 1), " \t\"")) {
        if (c != '\\') value += c;
    }
    if (value.starts_with(kHome)) return fs::path(home.native() + value.substr(kHome.size()));
    if (value.starts_with('/')) return fs::path(value);
    return std::nullopt;
}

std::optional<struct stat> FolderAt(const fs::path& path) {
    struct stat info {};
    if (::fstatat(AT_FDCWD, path.c_str(), &info, AT_NO_AUTOMOUNT) != 0 || !S_ISDIR(info.st_mode))
        return std::nullopt;
    return info;
}

/** As /tmp: everybody may put something there, and nobody else may take it away. */
bool IsForEverybody(const struct stat& folder) {
    return (folder.st_mode & S_IWOTH) != 0 && (folder.st_mode & S_ISVTX) != 0;
}

bool IsDesktopFolder(std::string_view name) {
    return std::any_of(kDesktopFolders.begin(), kDesktopFolders.end(),
                       [name](std::string_view known) { return ascii_text::EqualNoCase(known, name); });
}

}  // namespace

bool CPrivateFolders::IsMountRoot(const fs::path& folder) {
    struct statx facts {};
    if (::statx(AT_FDCWD, folder.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_INO, &facts) == 0 &&
        (facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0)
        return (facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    const auto own = FolderAt(folder), above = FolderAt(folder / "..");
    return own && above && own->st_dev != above->st_dev;
}

std::shared_ptr<const CPrivateFolders> CPrivateFolders::OfThisUser() {
    static std::mutex guard;
    static std::vector<std::string> madeOf;
    static std::shared_ptr<const CPrivateFolders> made;
    const std::lock_guard lock(guard);
    std::vector<std::string> variables = CurrentVariables();
    if (!made || variables != madeOf) {
        made = std::shared_ptr<const CPrivateFolders>(new CPrivateFolders(variables));
        madeOf = std::move(variables);
    }
    return made;
}

CPrivateFolders::CPrivateFolders(const std::vector<std::string>& variables) {
    const std::string& config = variables[1];
    for (const std::string& home : {variables[0], HomeInTheSystemsList()}) {
        if (!home.empty()) AddHome(home, config);
    }
    for (const char* folder : kSystemFolders) Add(folder);
    for (std::size_t i = 2; i < variables.size(); ++i) {
        if (!variables[i].empty()) Add(variables[i]);
    }
}

void CPrivateFolders::Add(const fs::path& folder) {
    if (const auto info = FolderAt(folder)) m_others.emplace(info->st_dev, info->st_ino);
}

void CPrivateFolders::AddHome(const fs::path& home, const std::string& configFolder) {
    if (const auto info = FolderAt(home)) m_homes.emplace(info->st_dev, info->st_ino);
    for (const std::string_view name : kDesktopFolders) Add(home / name);
    Add(home / ".cache");
    for (const fs::path& config : {home / ".config", fs::path(configFolder)}) {
        const auto list = file_util_ex::ReadWholeFile((config / "user-dirs.dirs").native(), kMaxListBytes);
        if (!list) continue;
        std::string_view text(reinterpret_cast<const char*>(list.Value().data()), list.Value().size());
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            if (const auto folder = FolderOfLine(text.substr(0, end), home)) Add(*folder);
            text.remove_prefix(std::min(end + 1, text.size()));
        }
    }
}

// Somebody else's home counts, too: a program run as another user still opens files there.
bool CPrivateFolders::IsHome(const fs::path& folder) const {
    if (folder.parent_path() == "/home") return true;
    const auto info = FolderAt(folder);
    return info && m_homes.contains({info->st_dev, info->st_ino});
}

bool CPrivateFolders::IsPersonal(const fs::path& folder) const {
    const auto info = FolderAt(folder);
    if (!info) return false;
    if (m_others.contains({info->st_dev, info->st_ino}) || IsForEverybody(*info)) return true;
    return IsHome(folder) || (IsDesktopFolder(folder.filename().native()) && IsHome(folder.parent_path()));
}
