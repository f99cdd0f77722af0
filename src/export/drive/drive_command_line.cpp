// SPDX-License-Identifier: MIT
#include "export/drive/drive_command_line.h"

std::wstring CommandLineOf(std::span<const std::wstring> arguments) {
    std::wstring line;
    for (const std::wstring& argument : arguments) {
        line += line.empty() ? L"\"" : L" \"";
        for (const wchar_t c : argument) {
            if (c == L'"' || c == L'\\') line += L'\\';
            line += c;
        }
        line += L'"';
    }
    return line;
}
