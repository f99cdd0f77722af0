// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/progress_text.h"

#include <string_view>

#include "base/text/lng.h"
#include "base/text/number_text.h"

std::wstring PercentText(std::wstring text, double percent) {
    constexpr std::wstring_view kPlace = L"%.2f";
    if (const std::size_t place = text.find(kPlace); place != text.npos)
        text.replace(place, kPlace.size(), lng::ConvertFromUTF8(number_text::FormatFixed(percent, 2)));
    return text + L"%";
}
