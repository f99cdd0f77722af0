// SPDX-License-Identifier: MIT
#include "settings/CIniFile.h"

// SI_IMPLEMENTATION compiles the library from its header: the shared one brings a Unicode library of 30
// MB along.
#define SI_IMPLEMENTATION
#define SI_NO_CONVERSION
#include <SimpleIni.h>

#include <algorithm>
#include <cstddef>

#include "base/text/lng.h"
#include "files/file_util_ex.h"

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
        // A backslash before any other character stands for itself: people write paths by hand.
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

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBrokenLine(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (line.starts_with(kByteOrderMark)) return true;
    if (!line.starts_with('[')) return false;
    const std::size_t end = line.find(']');
    return end == line.npos || line.substr(1, end - 1).find_first_not_of(" \t") == line.npos;
}

// The text without section lines that lack their ']' or name. The library would take what follows for the
// name, and lose it when it saves.
std::string WithoutBrokenLines(std::string_view text) {
    while (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    // The library removes one byte order mark. Without ours it could remove one that a dropped line
    // has uncovered.
    std::string kept(kByteOrderMark);
    kept.reserve(kept.size() + text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size() - 1);
        const std::string_view line = text.substr(at, end - at + 1);
        if (!IsBrokenLine(line.substr(0, line.find_first_of("\r\n")))) kept += line;
        at = end + 1;
    }
    return kept;
}

bool IsKeyName(std::string_view key) {
    return IsName(key, "=") && key.find_first_of("[;#") != 0 && !key.starts_with(kByteOrderMark);
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
        return CError{EErrorCode::TooLarge, lng::Mark("too large for settings"), {}};
    }
    if (HasNul(text)) return CError{EErrorCode::BadFormat, lng::Mark("not a text"), {}};
    const std::string sound = WithoutBrokenLines(text);
    if (m_content->ini.LoadData(sound.data(), sound.size()) < 0) {
        m_content = std::make_unique<CContent>();
        return CError{EErrorCode::BadFormat, lng::Mark("not readable as settings"), {}};
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
    (void)file_util_ex::MkdirPrivate(file_util_ex::GetFilePath(path));  // a failure shows in the next line
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
