// SPDX-License-Identifier: MIT
#include "files/file_util_ex.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "base/text/ascii_text.h"
#include "files/system_error.h"

namespace fs = std::filesystem;

namespace file_util_ex {
namespace {

using ascii_text::EqualNoCase;

bool MatchesMask(std::string_view name, std::string_view mask) {
    if (mask == "*" || mask == "*.*") return true;
    if (!mask.starts_with('*')) return EqualNoCase(name, mask);
    mask.remove_prefix(1);
    return name.size() > mask.size() && EqualNoCase(name.substr(name.size() - mask.size()), mask);
}

// Appends the entries that wanted accepts. An entry that vanishes or is refused meanwhile is left out.
template <class Wanted>
bool ListFolder(std::string_view folder, std::vector<std::string>& paths, const Wanted& wanted) {
    std::error_code error;
    fs::directory_iterator entry(fs::path(folder.empty() ? "." : folder), error);
    if (error) return false;
    std::vector<std::string> names;
    while (entry != fs::directory_iterator()) {
        std::string name = entry->path().filename().string();
        if (wanted(*entry, name)) names.push_back(std::move(name));
        entry.increment(error);
        if (error) return false;
    }
    std::ranges::sort(names);
    for (const std::string& name : names) paths.push_back(MakePath(folder, name));
    return true;
}

void AppendWide(const std::vector<std::string>& narrow, std::vector<std::wstring>& wide) {
    for (const std::string& path : narrow) wide.push_back(PathFromBytes(path));
}

}  // namespace

bool DoesFileExist(std::string_view path) {
    std::error_code error;
    return fs::is_regular_file(fs::path(path), error);
}

bool DoesFolderExist(std::string_view path) {
    std::error_code error;
    return fs::is_directory(fs::path(path), error);
}

bool DeleteFileW(std::string_view path) {
    return ::unlink(std::string(path).c_str()) == 0;
}

CStatus TryDeleteFile(std::string_view path) {
    if (DeleteFileW(path) || errno == ENOENT) return CDone{};
    return CError{EErrorCode::WriteFailed, SystemErrorText(errno), std::string(path)};
}

bool Mkdir(std::string_view path) {
    std::error_code error;
    fs::create_directories(fs::path(path), error);
    return DoesFolderExist(path);
}

bool MkdirPrivate(std::string_view path) {
    constexpr mode_t kOwner = 0700;
    (void)Mkdir(GetFilePath(path));  // a failure shows in the next line
    return ::mkdir(std::string(path).c_str(), kOwner) == 0 || DoesFolderExist(path);
}

bool Rmdir(std::string_view path) {
    std::error_code error;
    const fs::path folder(path);
    if (!fs::is_directory(fs::symlink_status(folder, error))) return false;
    if (fs::equivalent(folder, "/", error) || error) return false;
    fs::remove_all(folder, error);
    return !error;
}

bool GetAllFiles(std::string_view folder, std::vector<std::string>& files,
                 std::span<const std::string> masks) {
    return ListFolder(folder, files, [masks](const fs::directory_entry& entry, std::string_view name) {
        const auto matches = [name](std::string_view mask) { return MatchesMask(name, mask); };
        std::error_code error;
        return (masks.empty() || std::ranges::any_of(masks, matches)) && entry.is_regular_file(error);
    });
}

bool GetSubDirs(std::string_view folder, std::vector<std::string>& folders) {
    return ListFolder(folder, folders, [](const fs::directory_entry& entry, std::string_view) {
        std::error_code error;
        return entry.is_directory(error);
    });
}

bool GetAllFiles(std::wstring_view folder, std::vector<std::wstring>& files,
                 std::span<const std::wstring> masks) {
    std::vector<std::string> narrowMasks;
    for (const std::wstring& mask : masks) narrowMasks.push_back(ConvertToUTF8(mask));
    std::vector<std::string> narrow;
    const bool listed = GetAllFiles(ConvertToUTF8(folder), narrow, narrowMasks);
    AppendWide(narrow, files);
    return listed;
}

bool GetSubDirs(std::wstring_view folder, std::vector<std::wstring>& folders) {
    std::vector<std::string> narrow;
    const bool listed = GetSubDirs(ConvertToUTF8(folder), narrow);
    AppendWide(narrow, folders);
    return listed;
}

bool DoesFileExist(std::wstring_view path) {
    return DoesFileExist(ConvertToUTF8(path));
}
bool DoesFolderExist(std::wstring_view path) {
    return DoesFolderExist(ConvertToUTF8(path));
}
bool DeleteFileW(std::wstring_view path) {
    return DeleteFileW(ConvertToUTF8(path));
}
bool Mkdir(std::wstring_view path) {
    return Mkdir(ConvertToUTF8(path));
}
bool Rmdir(std::wstring_view path) {
    return Rmdir(ConvertToUTF8(path));
}

}  // namespace file_util_ex
