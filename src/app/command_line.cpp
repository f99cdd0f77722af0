// SPDX-License-Identifier: MIT
#include "app/command_line.h"

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

bool NeedsNoWindow(std::span<const std::wstring> arguments) {
    for (const std::wstring& argument : arguments) {
        if (argument == L"--") return false;  // what follows are names
        if (argument == L"-h" || argument == L"--help") return true;
    }
    return false;
}
