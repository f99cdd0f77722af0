// SPDX-License-Identifier: MIT
#include "platform/CIniFile.h"

// The header holds the whole library where it is asked to; the shared one brings a Unicode library of 30 MB
// along.
#define SI_IMPLEMENTATION
#define SI_NO_CONVERSION
#include <SimpleIni.h>

#include <algorithm>
#include <cstddef>

#include "platform/file_util_ex.h"

namespace {

// A type of our own, so that this code never meets the shared library's in one program.
struct CNameLess : SI_GenericNoCase<char> {};
using CParser = CSimpleIniTempl<char, CNameLess, SI_ConvertA<char>>;

constexpr std::size_t kMaxBytes = 16 << 20;
constexpr std::ptrdiff_t kMaxLines = 200'000;  // each costs some 200 bytes once it is read
constexpr std::string_view kEscaped = "nrt\\";
constexpr std::string_view kControls = "\n\r\t\\";

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20;
}
bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}
bool HasNul(std::string_view text) {
    return text.find('\0') != text.npos;
}
bool HasBlankEnd(std::string_view text) {
    return !text.empty() && (IsBlank(text.front()) || IsBlank(text.back()));
}

bool IsQuoted(std::string_view text) {
    return text.size() >= 2 && text.front() == '"' && text.back() == '"';
}
bool IsEscaped(std::string_view text) {
    return text.starts_with('$') && IsQuoted(text.substr(1));
}

std::string Escaped(std::string_view value) {
    std::string text = "$\"";
    for (const char c : value) {
        const std::size_t code = kControls.find(c);
        if (code == kControls.npos) {
            text += c;
        } else {
            text += '\\';
            text += kEscaped[code];
        }
    }
    return text += '"';
}

std::string Unescaped(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t code =
            text[i] == '\\' && i + 1 < text.size() ? kEscaped.find(text[i + 1]) : kEscaped.npos;
        // A backslash before anything else is what it is: people write paths by hand.
        value += code == kEscaped.npos ? text[i] : kControls[code];
        if (code != kEscaped.npos) ++i;
    }
    return value;
}

std::string TextOfValue(std::string_view value) {
    if (value.find_first_of("\n\r") != value.npos) return Escaped(value);
    if (HasBlankEnd(value) || IsQuoted(value) || IsEscaped(value)) return '"' + std::string(value) + '"';
    return std::string(value);
}

std::string ValueOfText(std::string_view text) {
    if (IsQuoted(text)) return std::string(text.substr(1, text.size() - 2));
    if (IsEscaped(text)) return Unescaped(text.substr(2, text.size() - 3));
    return std::string(text);
}

bool IsName(std::string_view name, std::string_view forbidden) {
    return !name.empty() && !HasBlankEnd(name) && std::ranges::none_of(name, IsControl) &&
           name.find_first_of(forbidden) == name.npos;
}

bool IsKeyName(std::string_view key) {
    return IsName(key, "=") && key.find_first_of("[;#") != 0;
}

}  // namespace

struct CIniFile::CContent {
    CContent() { ini.SetSpaces(false); }
    CParser ini{true, false, false};  // UTF-8, one value a key, no multi-line values
};

CIniFile::CIniFile() : m_content(std::make_unique<CContent>()) {}
CIniFile::~CIniFile() = default;

CStatus CIniFile::Parse(std::string_view text) {
    m_content = std::make_unique<CContent>();
    if (text.size() > kMaxBytes ||
        std::ranges::count(text, '\n') + std::ranges::count(text, '\r') > kMaxLines) {
        return CError{EErrorCode::TooLarge, "too large for settings", {}};
    }
    if (HasNul(text)) return CError{EErrorCode::BadFormat, "not a text", {}};
    if (!text.empty() && m_content->ini.LoadData(text.data(), text.size()) < 0) {
        m_content = std::make_unique<CContent>();
        return CError{EErrorCode::BadFormat, "not readable as settings", {}};
    }
    return CDone{};
}

CStatus CIniFile::Load(std::string_view path) {
    const CResult<std::vector<std::byte>> bytes = file_util_ex::ReadWholeFile(path, kMaxBytes);
    if (!bytes) {
        m_content = std::make_unique<CContent>();
        return bytes.Error();
    }
    const auto* text = reinterpret_cast<const char*>(bytes.Value().data());
    CStatus parsed = Parse({text, bytes.Value().size()});
    if (parsed) return parsed;
    return CError{parsed.Error().code, parsed.Error().message, std::string(path)};
}

std::string CIniFile::Text() const {
    std::string text;
    (void)m_content->ini.Save(text);  // fails only where the encoding is converted, which it is not
    return text;
}

CStatus CIniFile::Save(std::string_view path) const {
    return file_util_ex::WriteFileAtomically(path, Text());
}

std::optional<std::string> CIniFile::Get(std::string_view section, std::string_view key) const {
    if (HasNul(section) || HasNul(key)) return std::nullopt;
    const char* text = m_content->ini.GetValue(std::string(section).c_str(), std::string(key).c_str());
    if (text == nullptr) return std::nullopt;
    return ValueOfText(text);
}

bool CIniFile::Set(std::string_view section, std::string_view key, std::string_view value) {
    if (!IsName(section, "]") || !IsKeyName(key) || HasNul(value)) return false;
    const std::string text = TextOfValue(value);
    return m_content->ini.SetValue(std::string(section).c_str(), std::string(key).c_str(), text.c_str()) >= 0;
}

std::vector<std::string> CIniFile::Sections() const {
    CParser::TNamesDepend names;
    m_content->ini.GetAllSections(names);
    names.sort(CParser::Entry::LoadOrder());
    std::vector<std::string> sections;
    for (const CParser::Entry& name : names) sections.emplace_back(name.pItem);
    return sections;
}
