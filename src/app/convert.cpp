// SPDX-License-Identifier: MIT
#include "app/convert.h"

#include "settings/CSettings.h"

bool ConvertToPov(const std::wstring& input, const std::wstring& output) {
    if (input.empty() || output.empty()) return false;
    return false;  // this version has no exporter
}
