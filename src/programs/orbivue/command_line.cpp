// SPDX-License-Identifier: MIT
#include "programs/orbivue/command_line.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "session/folder_models.h"

namespace {

bool TakePrefixNoCase(std::string_view& text, std::string_view prefix) {
    if (!ascii_text::EqualNoCase(text.substr(0, prefix.size()), prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

// Nothing when two hexadecimal digits do not follow a "%", or for a byte that no file name contains.
std::optional<std::string> PercentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '%') {
            unsigned char byte = 0;
            const std::string_view digits = text.substr(i + 1, 2);
            const char* end = digits.data() + digits.size();
            if (digits.size() < 2 || std::from_chars(digits.data(), end, byte, 16).ptr != end || byte == 0)
                return std::nullopt;
            c = static_cast<char>(byte);
            i += digits.size();
        }
        decoded += c;
    }
    return decoded;
}

// Absolute, because the list of recent files is used with other current folders.
std::wstring Absolute(const std::wstring& path) {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    return file_util_ex::MakeAbsolute(file_util_ex::PathFromBytes(folder.native()), path);
}

constexpr std::wstring_view kToolkitOptions[] = {L"--class",        L"--display",   L"--gdk-debug",
                                                 L"--gdk-no-debug", L"--gtk-debug", L"--gtk-module",
                                                 L"--gtk-no-debug", L"--name",      L"--g-fatal-warnings"};
constexpr std::wstring_view kWithoutValue = L"--g-fatal-warnings";

}  // namespace

std::vector<wchar_t*> WithoutToolkitOptions(std::span<wchar_t* const> arguments) {
    std::vector<wchar_t*> ours;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring_view argument(arguments[i]);
        if (argument == L"--") {  // what follows are names
            ours.insert(ours.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i), arguments.end());
            break;
        }
        const std::size_t nameLength = std::min(argument.find(L'='), argument.size());
        if (std::ranges::count(kToolkitOptions, argument.substr(0, nameLength)) == 0)
            ours.push_back(arguments[i]);
        else if (nameLength == argument.size() && argument != kWithoutValue)
            ++i;  // its value
    }
    return ours;
}

std::wstring JoinModelPath(std::span<const std::wstring> parameters,
                           const std::function<bool(const std::wstring&)>& doesFileExist) {
    std::wstring path;
    for (const std::wstring& parameter : parameters) {
        if (path.empty()) {
            path = parameter;
            continue;
        }
        if (doesFileExist(path)) break;
        path += L' ' + parameter;
    }
    return path;
}

std::optional<CConversionPaths> ConversionPathsOf(std::span<const std::wstring> parameters) {
    if (parameters.empty() || parameters.size() > 2) return std::nullopt;
    const std::wstring& input = parameters.front();
    if (parameters.size() == 2) return CConversionPaths{input, parameters.back()};
    return CConversionPaths{input, file_util_ex::GetFileNameWithPath(input) + L".pov"};
}

std::wstring PathOfParameter(const std::wstring& parameter) {
    const std::string address = file_util_ex::ConvertToUTF8(parameter);
    std::string_view rest(address);
    if (!TakePrefixNoCase(rest, "file:")) return parameter;
    // "file:/path" and "file://host/path"
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        (void)TakePrefixNoCase(rest, "localhost");
    }
    const std::optional<std::string> path = PercentDecoded(rest);
    return rest.starts_with('/') && path ? file_util_ex::PathFromBytes(*path) : parameter;
}

CResult<std::wstring> ModelToOpen(const std::wstring& path) {
    if (file_util_ex::DoesFileExist(path)) return Absolute(path);
    if (!file_util_ex::DoesFolderExist(path)) return CError{EErrorCode::NotFound, {}, {}};
    const std::wstring folder = Absolute(path);
    const std::vector<std::wstring> models = folder_models::ListInside(folder);
    if (!models.empty()) return models.front();
    return CError{EErrorCode::NotFound, lng::Mark("there is no model in this folder"),
                  file_util_ex::ConvertToUTF8(folder)};
}
