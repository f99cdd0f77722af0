// SPDX-License-Identifier: MIT
#include "programs/orbivue/command_line.h"

#include "files/file_util_ex.h"

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

bool NeedsNoWindow(std::span<const std::wstring> arguments) {
    for (const std::wstring& argument : arguments) {
        if (argument == L"--") return false;  // what follows are names
        if (argument == L"-h" || argument == L"--help" || argument == L"-c" || argument == L"--convert")
            return true;
    }
    return false;
}
