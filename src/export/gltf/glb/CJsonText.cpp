// SPDX-License-Identifier: MIT
#include "export/gltf/glb/CJsonText.h"

#include <array>
#include <charconv>
#include <cmath>

void CJsonText::Separate() {
    if (m_needsComma) m_text += ',';
    m_needsComma = true;
}

CJsonText& CJsonText::Begin(char bracket) {
    Separate();
    m_text += bracket;
    m_needsComma = false;
    return *this;
}

CJsonText& CJsonText::End(char bracket) {
    m_text += bracket;
    m_needsComma = true;
    return *this;
}

CJsonText& CJsonText::Key(std::string_view key) {
    Value(key);
    m_text += ':';
    m_needsComma = false;
    return *this;
}

CJsonText& CJsonText::Value(std::string_view text) {
    constexpr std::string_view kHex = "0123456789abcdef";
    Separate();
    m_text += '"';
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            m_text += '\\';
            m_text += c;
        } else if (code < 0x20 || code == 0x7F) {
            m_text += "\\u00";
            m_text += kHex[code >> 4];
            m_text += kHex[code & 15];
        } else {
            m_text += c;
        }
    }
    m_text += '"';
    return *this;
}

CJsonText& CJsonText::Value(bool value) {
    return Raw(value ? "true" : "false");
}

CJsonText& CJsonText::Value(std::int64_t value) {
    std::array<char, 24> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return Raw({text.data(), static_cast<std::size_t>(end - text.data())});
}

CJsonText& CJsonText::Value(float value) {
    std::array<char, 32> text{};
    // Adding 0 makes -0 plain.
    const float sound = std::isfinite(value) ? value + 0.0f : 0.0f;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), sound).ptr;
    return Raw({text.data(), static_cast<std::size_t>(end - text.data())});
}

CJsonText& CJsonText::ValueOfNineDigits(double value) {
    std::array<char, 48> text{};
    const double sound = std::isfinite(value) ? value + 0.0 : 0.0;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), sound, std::chars_format::general, 9).ptr;
    return Raw({text.data(), static_cast<std::size_t>(end - text.data())});
}

CJsonText& CJsonText::Value(std::span<const float> values) {
    BeginArray();
    for (const float value : values) Value(value);
    return EndArray();
}

CJsonText& CJsonText::Raw(std::string_view json) {
    Separate();
    m_text += json;
    return *this;
}
