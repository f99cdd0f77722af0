// SPDX-License-Identifier: MIT
#include "widgets/file_dialog_text.h"

#include <algorithm>

#include "base/text/ascii_text.h"
#include "files/file_util_ex.h"

namespace file_dialog_text {
namespace {

std::vector<std::wstring> Split(std::wstring_view text, wchar_t at) {
    std::vector<std::wstring> parts;
    while (true) {
        const std::size_t end = text.find(at);
        parts.emplace_back(ascii_text::Trimmed(text.substr(0, end), L" "));
        if (end == std::wstring_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

CFilter MakeFilter(const std::wstring& label, std::wstring_view patterns) {
    CFilter filter{label, {}};
    for (std::wstring& pattern : Split(patterns, L';'))
        if (!pattern.empty()) filter.patterns.push_back(std::move(pattern));
    if (filter.patterns.empty()) filter.patterns.emplace_back(L"*");
    return filter;
}

bool HasExtension(const CFilter& filter, std::wstring_view extension) {
    return std::ranges::any_of(filter.patterns, [&](const std::wstring& pattern) {
        const std::wstring own = ExtensionOf(pattern);
        return own.empty() || ascii_text::EqualNoCase(own, extension);
    });
}

bool IsNumber(std::wstring_view text) {
    return std::ranges::all_of(text, [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

}  // namespace

std::vector<CFilter> ParseWildcard(std::wstring_view wildcard) {
    std::vector<std::wstring> parts = Split(wildcard, L'|');
    while (!parts.empty() && parts.back().empty()) parts.pop_back();
    std::vector<CFilter> filters;
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2)
        filters.push_back(MakeFilter(parts[i], parts[i + 1]));
    if (parts.size() % 2 == 1) filters.push_back(MakeFilter(parts.back(), parts.back()));
    return filters;
}

std::wstring JoinWildcard(const std::vector<CFilter>& filters) {
    std::wstring joined;
    for (const CFilter& filter : filters) {
        if (!joined.empty()) joined += L'|';
        joined += filter.label + L'|';
        for (const std::wstring& pattern : filter.patterns) {
            if (&pattern != filter.patterns.data()) joined += L';';
            joined += pattern;
        }
    }
    return joined;
}

std::wstring ExtensionOf(std::wstring_view pattern) {
    const std::size_t dot = pattern.rfind(L'.');
    const std::wstring_view extension = dot == std::wstring_view::npos ? pattern : pattern.substr(dot + 1);
    return std::wstring(extension.find_first_of(L"*?") == std::wstring_view::npos ? extension : L"");
}

std::wstring ExtensionFor(const std::vector<CFilter>& filters, int chosen,
                          std::wstring_view defaultExtension) {
    std::wstring standard = ExtensionOf(defaultExtension);
    if (chosen < 0 || static_cast<std::size_t>(chosen) >= filters.size()) return standard;
    const CFilter& filter = filters[static_cast<std::size_t>(chosen)];
    if (!standard.empty() && HasExtension(filter, standard)) return standard;
    std::wstring first = ExtensionOf(filter.patterns.front());
    return first.empty() ? standard : first;
}

std::wstring AddExtension(std::wstring_view path, std::wstring_view extension) {
    std::wstring result(path);
    if (extension.empty() || !IsNumber(file_util_ex::GetFileExt(result))) return result;
    while (result.ends_with(L'.')) result.pop_back();
    return result + L'.' + std::wstring(extension);
}

std::wstring NameForFilter(std::wstring_view name, const CFilter& filter) {
    const std::wstring extension = ExtensionOf(filter.patterns.front());
    if (extension.empty() || IsNumber(file_util_ex::GetFileExt(name)) ||
        HasExtension(filter, file_util_ex::GetFileExt(name))) {
        return std::wstring(name);
    }
    return file_util_ex::SetFileExt(name, extension);
}

}  // namespace file_dialog_text
