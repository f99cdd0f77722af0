// SPDX-License-Identifier: MIT
#include "files/std_file_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <span>
#include <system_error>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/start_program.h"

namespace fs = std::filesystem;
using file_util_ex::ConvertToUTF8;
using file_util_ex::MakePath;
using file_util_ex::PathFromBytes;

namespace std_file_paths {
namespace {

struct CNames {
    std::mutex guard;
    std::string folderName = "orbivue";
    std::string tempDir;
};

CNames& Names() {
    static CNames names;
    return names;
}

std::string FolderName() {
    const std::lock_guard lock(Names().guard);
    return Names().folderName;
}

std::string HomeFolder() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') return home;
    std::array<char, 4096> buffer = {};
    passwd entry = {};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) {
        return entry.pw_dir;
    }
    return "/";
}

// A base folder of the desktop's convention: the variable counts only when its path is absolute.
std::string BaseFolder(const char* variable, std::string_view underHome) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value == '/' ? value : MakePath(HomeFolder(), underHome);
}

std::string OwnFolder(const char* variable, std::string_view underHome) {
    std::string folder = MakePath(BaseFolder(variable, underHome), FolderName());
    // When this fails, so does whatever uses the path, and that is where the error can be reported.
    (void)file_util_ex::MkdirPrivate(folder);
    return folder;
}

std::string ExecutablePath() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).string();
}

bool Exists(const std::string& path) {
    std::error_code error;
    return fs::exists(path, error);
}

// The first of the roots under which the relative path exists; the first root's path when it is nowhere.
std::string FindUnder(std::span<const std::string> roots, std::string_view relative) {
    for (const std::string& root : roots) {
        if (std::string path = MakePath(root, relative); Exists(path)) return path;
    }
    return MakePath(roots.front(), relative);
}

constexpr std::string_view kAppFolder = "/" ORBIVUE_INSTALL_LIBDIR "/orbivue";
constexpr std::string_view kScripts = "/scripts";

// A program lies in bin, or among the application's scripts.
std::string InstallPrefix() {
    const std::string folder = GetProgramFolderPath();
    const std::string scripts = std::string(kAppFolder) + std::string(kScripts);
    if (folder.ends_with(scripts)) return folder.substr(0, folder.size() - scripts.size());
    return file_util_ex::GetFilePath(folder);
}

// An installed program never looks into the build tree: on a user's machine that path may belong to anybody.
bool RunsInBuildTree() {
    return ExecutablePath().starts_with(ORBIVUE_BUILD_TREE "/");
}

// True for "http://..." and the like.
bool IsAddress(std::string_view text) {
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const std::size_t colon = text.find(':');
    return colon != text.npos && colon > 1 && text.substr(0, colon).find_first_not_of(kLetters) == text.npos;
}

// What the opener of the desktop is to do: a file has its folder as working folder, as pictures that it names
// may be found from there, and begins with '/', so that no name is taken for an option or an address.
CProgramToStart OpenerOf(std::string_view urlOrPath) {
    CProgramToStart opener{"xdg-open", {}, {}};
    if (IsAddress(urlOrPath) && !Exists(std::string(urlOrPath))) {
        opener.arguments.emplace_back(urlOrPath);
        return opener;
    }
    std::error_code error;
    const std::string path = file_util_ex::MakeAbsolute(fs::current_path(error).string(), urlOrPath);
    opener.arguments.push_back(path);
    opener.folder = file_util_ex::GetFilePath(path);
    return opener;
}

}  // namespace

void SetAppName(std::string_view name) {
    const std::lock_guard lock(Names().guard);
    Names().folderName.clear();
    for (const char c : name) {
        if (c != '/') Names().folderName += ascii_text::Lower(c);
    }
}

std::string GetIniFilePath(std::string_view fileName) {
    return MakePath(MakePath(BaseFolder("XDG_CONFIG_HOME", ".config"), FolderName()), fileName);
}

std::string GetCacheFolderPath() {
    return OwnFolder("XDG_CACHE_HOME", ".cache");
}
std::string GetCacheHomePath() {
    return BaseFolder("XDG_CACHE_HOME", ".cache");
}
std::string GetUserDataFolderPath() {
    return OwnFolder("XDG_DATA_HOME", ".local/share");
}

std::string GetTempDir() {
    const std::string name = FolderName() + "-XXXXXX";
    const std::lock_guard lock(Names().guard);
    std::string& tempDir = Names().tempDir;
    if (tempDir.empty()) {
        std::error_code error;
        const fs::path base = fs::temp_directory_path(error);
        const std::string here = fs::current_path(error).string();
        std::string made =
            MakePath(base.empty() ? "/tmp" : file_util_ex::MakeAbsolute(here, base.string()), name);
        if (::mkdtemp(made.data()) != nullptr) tempDir = std::move(made);
    }
    return tempDir;
}

std::string GetTempFilePath(std::string_view fileName) {
    return MakePath(GetTempDir(), fileName);
}

void DeleteTempDir() {
    const std::lock_guard lock(Names().guard);
    if (!Names().tempDir.empty()) (void)file_util_ex::Rmdir(std::exchange(Names().tempDir, {}));
}

std::string GetProgramFolderPath() {
    return file_util_ex::GetFilePath(ExecutablePath());
}

std::string GetAppFolderPath() {
    return InstallPrefix() + std::string(kAppFolder);
}

std::string GetDataPath(std::string_view relative) {
    std::vector<std::string> roots = {InstallPrefix() + "/share/orbivue"};
    if (RunsInBuildTree())
        roots.insert(roots.end(), {ORBIVUE_BUILD_TREE "/data", ORBIVUE_SOURCE_TREE "/data"});
    return FindUnder(roots, relative);
}

std::string GetImgPath(std::string_view fileName) {
    return GetDataPath(MakePath("images", fileName));
}

void GetLngDirNames(std::vector<std::wstring>& names) {
    std::vector<std::string> folders;
    (void)file_util_ex::GetSubDirs(GetDataPath("languages"), folders);  // none: English alone
    names = {L"en"};
    for (const std::string& folder : folders)
        names.push_back(PathFromBytes(file_util_ex::GetFileName(folder)));
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
}

std::string GetPluginPath(std::string_view fileName) {
    std::vector<std::string> roots = {GetAppFolderPath()};
    if (RunsInBuildTree()) roots.emplace_back(ORBIVUE_BUILD_TREE "/lib");
    return FindUnder(roots, fileName);
}

CStatus LaunchBrowser(std::string_view urlOrPath) {
    const auto failure = [urlOrPath](const char* why) {
        return CError{EErrorCode::NotFound, why, std::string(urlOrPath)};
    };
    if (urlOrPath.empty()) return failure(lng::Mark("there is no such file or folder"));
    CResult<CStartedProgram> opener = StartProgram(OpenerOf(urlOrPath));
    if (!opener) return opener.Error();
    // Some desktops' opener runs as long as what it opened, so a longer life is a success.
    constexpr std::chrono::seconds kLongest(1);
    constexpr int kNoSuchFile = 2;
    const int code = opener.Value().WaitForEnd(kLongest).value_or(0);
    if (code == 0) return CDone{};
    return failure(code == kNoSuchFile ? lng::Mark("there is no such file or folder")
                                       : lng::Mark("the desktop has no program that opens this"));
}

void SetAppName(std::wstring_view name) {
    SetAppName(ConvertToUTF8(name));
}
std::wstring GetIniFilePath(std::wstring_view fileName) {
    return PathFromBytes(GetIniFilePath(ConvertToUTF8(fileName)));
}
std::wstring GetTempDirName() {
    return PathFromBytes(GetTempDir());
}
std::wstring GetTempFilePath(std::wstring_view fileName) {
    return PathFromBytes(GetTempFilePath(ConvertToUTF8(fileName)));
}
std::wstring GetDataPath(std::wstring_view relative) {
    return PathFromBytes(GetDataPath(ConvertToUTF8(relative)));
}
std::wstring GetImgPath(std::wstring_view fileName) {
    return PathFromBytes(GetImgPath(ConvertToUTF8(fileName)));
}
CStatus LaunchBrowser(std::wstring_view urlOrPath) {
    return LaunchBrowser(ConvertToUTF8(urlOrPath));
}

}  // namespace std_file_paths
