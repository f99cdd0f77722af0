// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/progress_text.h"

#include <string_view>

#include "base/text/lng.h"

std::wstring PercentText(std::wstring text, double percent) {
    constexpr std::wstring_view kPlace = L"%.2f";
    if (const std::size_t place = text.find(kPlace); place != text.npos)
        text.replace(place, kPlace.size(), lng::Decimal(percent, 2));
    return text + lng::TextIn("behind a number", "%");
}
