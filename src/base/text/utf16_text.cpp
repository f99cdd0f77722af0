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
        unsigned unit = unitAt(i);
        if (unit >= 0xD800 && unit < 0xDC00 && i + 3 < bytes.size()) {
            const unsigned low = unitAt(i + 2);
            if (low >= 0xDC00 && low < 0xE000) {
                unit = 0x10000 + (unit - 0xD800) * 0x400 + (low - 0xDC00);
                i += 2;
            }
        }
        part.push_back(static_cast<wchar_t>(unit));
        // Wide characters take four bytes each, so a large file is done in parts.
        if (part.size() == 65'536) flush();
    }
    flush();
    return text;
}
