// SPDX-License-Identifier: MIT
#include "base/text/utf16_text.h"

#include "base/text/utf8_text.h"

std::string Utf16ToUtf8(std::string_view bytes) {
    const bool bigEndian = bytes.starts_with("\xFE\xFF");
    if (!bigEndian && !bytes.starts_with("\xFF\xFE")) return {};
    const auto unitAt = [&](std::size_t i) {
        const auto first = static_cast<unsigned char>(bytes[i]),
                   second = static_cast<unsigned char>(bytes[i + 1]);
        return bigEndian ? first * 256u + second : second * 256u + first;
    };
    std::string text;
    std::wstring part;
    const auto flush = [&] {
        text += file_util_ex::ConvertToUTF8(part);
        part.clear();
    };
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
        const unsigned unit = unitAt(i);
        part.push_back(static_cast<wchar_t>(unit));
        // Wide characters take four bytes each, so a large file is done in parts, none of which ends
        // between the halves of a pair.
        const bool isFirstOfPair = unit >= 0xD800 && unit < 0xDC00;
        if (part.size() >= 65'536 && !isFirstOfPair) flush();
    }
    flush();
    return text;
}
