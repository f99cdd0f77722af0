// SPDX-License-Identifier: MIT
#include <filesystem>
#include <system_error>

#include "files/file_util_ex.h"

namespace fs = std::filesystem;

namespace file_util_ex {
namespace {

template <class Char>
constexpr Char kSlash = Char('/');
template <class Char>
constexpr Char kDot = Char('.');

template <class Char>
using View = std::basic_string_view<Char>;
template <class Char>
using String = std::basic_string<Char>;

template <class Char>
std::size_t NameStart(View<Char> path) {
    const std::size_t slash = path.rfind(kSlash<Char>);
    return slash == View<Char>::npos ? 0 : slash + 1;
}

// Where the extension's dot is, or the length: a name's first character begins no extension.
template <class Char>
std::size_t ExtStart(View<Char> path) {
    const std::size_t dot = path.rfind(kDot<Char>);
    if (dot == View<Char>::npos || dot <= NameStart(path)) return path.size();
    // ".." is a folder, not a name "." with an empty extension.
    return path.substr(NameStart(path)) == String<Char>(2, kDot<Char>) ? path.size() : dot;
}

template <class Char>
String<Char> ExtOf(View<Char> path) {
    const std::size_t dot = ExtStart(path);
    return dot < path.size() ? String<Char>(path.substr(dot + 1)) : String<Char>();
}

template <class Char>
String<Char> FolderOf(View<Char> path) {
    std::size_t end = NameStart(path);
    while (end > 1 && path[end - 1] == kSlash<Char>) --end;
    return String<Char>(path.substr(0, end));
}

template <class Char>
String<Char> WithExt(View<Char> path, View<Char> ext) {
    String<Char> out(path.substr(0, ExtStart(path)));
    if (!ext.empty() && ext.front() == kDot<Char>) ext.remove_prefix(1);
    if (ext.empty()) return out;
    out += kDot<Char>;
    return out.append(ext);
}

template <class Char>
String<Char> Joined(View<Char> folder, View<Char> name) {
    if (folder.empty()) return String<Char>(name);
    while (!name.empty() && name.front() == kSlash<Char>) name.remove_prefix(1);
    String<Char> out(folder);
    if (out.back() != kSlash<Char>) out += kSlash<Char>;
    return out.append(name);
}

// Where ".." leads from a path. Something that is no folder keeps its "..", so the result names nothing, as
// it does for the system.
std::string FolderAbove(const std::string& path) {
    if (path == "/") return path;
    std::error_code error;
    std::string folder = path;
    if (fs::is_symlink(path, error)) folder = fs::canonical(path, error).string();
    if (error || !fs::is_directory(folder, error)) return MakePath(path, "..");
    return fs::path(folder).parent_path().string();
}

}  // namespace

std::string GetFileExt(std::string_view path) {
    return ExtOf(path);
}
std::wstring GetFileExt(std::wstring_view path) {
    return ExtOf(path);
}
std::string GetFileName(std::string_view path) {
    return std::string(path.substr(NameStart(path)));
}
std::wstring GetFileName(std::wstring_view path) {
    return std::wstring(path.substr(NameStart(path)));
}
std::string GetFileNameWithPath(std::string_view path) {
    return std::string(path.substr(0, ExtStart(path)));
}
std::wstring GetFileNameWithPath(std::wstring_view path) {
    return std::wstring(path.substr(0, ExtStart(path)));
}
std::string GetFilePath(std::string_view path) {
    return FolderOf(path);
}
std::wstring GetFilePath(std::wstring_view path) {
    return FolderOf(path);
}
std::string SetFileExt(std::string_view path, std::string_view ext) {
    return WithExt(path, ext);
}
std::wstring SetFileExt(std::wstring_view path, std::wstring_view ext) {
    return WithExt(path, ext);
}
std::string MakePath(std::string_view folder, std::string_view name) {
    return Joined(folder, name);
}
std::wstring MakePath(std::wstring_view folder, std::wstring_view name) {
    return Joined(folder, name);
}

std::string MakeAbsolute(std::string_view folder, std::string_view path) {
    const std::string joined = path.starts_with('/') ? std::string(path) : MakePath(folder, path);
    std::string result = joined.starts_with('/') ? "/" : "";
    for (const fs::path& part : fs::path(joined)) {
        const std::string& name = part.native();
        if (name == "..") {
            result = FolderAbove(result);
        } else if (name != "." && name.find_first_not_of('/') != name.npos) {
            result = MakePath(result, name);
        }
    }
    return result;
}

std::wstring MakeAbsolute(std::wstring_view folder, std::wstring_view path) {
    return PathFromBytes(MakeAbsolute(ConvertToUTF8(folder), ConvertToUTF8(path)));
}

}  // namespace file_util_ex
