// SPDX-License-Identifier: MIT
#include "script/script_lines.h"

#include <algorithm>
#include <vector>

#include "base/text/ascii_text.h"
#include "settings/CIniFile.h"

namespace script_lines {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF", kBlanks = " \t";

struct CLine {
    std::string_view text;  ///< with its end
    enum class EKind { Other, Section, Key } kind = EKind::Other;
    std::string_view name;  ///< of the section or key
};

CLine LineOf(std::string_view text) {
    CLine line;
    line.text = text;
    std::string_view content = ascii_text::Trimmed(text);
    while (content.starts_with(kByteOrderMark))
        content = ascii_text::Trimmed(content.substr(kByteOrderMark.size()));
    if (content.starts_with(';') || content.starts_with('#')) return line;
    if (content.starts_with('[')) {
        const std::size_t end = content.find(']');
        if (end == content.npos) return line;
        line.name = ascii_text::Trimmed(content.substr(1, end - 1), kBlanks);
        if (!line.name.empty()) line.kind = CLine::EKind::Section;
        return line;
    }
    const std::size_t equals = content.find('=');
    if (equals == content.npos || equals == 0) return line;
    line.name = ascii_text::Trimmed(content.substr(0, equals), kBlanks);
    line.kind = CLine::EKind::Key;
    return line;
}

std::vector<CLine> LinesOf(std::string_view text) {
    std::vector<CLine> lines;
    while (!text.empty()) {
        std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        if (text.substr(end, 2) == "\r\n") ++end;
        end = std::min(end + 1, text.size());
        lines.push_back(LineOf(text.substr(0, end)));
        text.remove_prefix(end);
    }
    return lines;
}

/** "key=value" in the plainest form that reads back. */
std::string Written(std::string_view key, const std::string& value) {
    CIniFile ini;
    (void)ini.Set("S", key,
                  value);  // a value that cannot be set leaves no line; the caller reads the result again
    const std::string text = ini.Text();
    const std::size_t start = text.find(std::string(key) + "=");
    if (start == text.npos) return {};
    return text.substr(start, text.find_first_of("\r\n", start) - start);
}

/** The end of a section's last line that is more than blanks. */
std::size_t EndOfSection(const std::vector<CLine>& lines, std::size_t header) {
    std::size_t end = header + 1;
    for (std::size_t i = end; i < lines.size() && lines[i].kind != CLine::EKind::Section; ++i) {
        if (lines[i].kind == CLine::EKind::Key) end = i + 1;
    }
    return end;
}

void EndLine(std::string& text, std::string_view lineEnd) {
    if (!text.empty() && text.back() != '\n' && text.back() != '\r') text += lineEnd;
}

}  // namespace

std::string Changed(std::string_view text, std::string_view section, std::span<const CChange> changes) {
    const std::vector<CLine> lines = LinesOf(text);
    const std::string_view lineEnd = text.find("\r\n") != text.npos ? "\r\n" : "\n";
    std::vector<bool> isDropped(lines.size());
    std::optional<std::size_t> at;
    bool isInside = section.empty(), isPlaced = false;
    if (isInside) at = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].kind == CLine::EKind::Section) {
            isInside = ascii_text::EqualNoCase(lines[i].name, section);
            if (isInside && !at) at = EndOfSection(lines, i);
        }
        const auto isOfLine = [&](const CChange& change) {
            return ascii_text::EqualNoCase(change.key, lines[i].name);
        };
        isDropped[i] = isInside && lines[i].kind == CLine::EKind::Key &&
                       std::any_of(changes.begin(), changes.end(), isOfLine);
        if (isDropped[i] && !isPlaced) at = i;
        isPlaced = isPlaced || isDropped[i];
    }
    std::string result;
    const auto add = [&] {
        EndLine(result, lineEnd);
        for (const CChange& change : changes)
            if (change.value) result += Written(change.key, *change.value) + std::string(lineEnd);
    };
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (at == i) add();
        if (!isDropped[i]) result += lines[i].text;
    }
    if (!at) {
        EndLine(result, lineEnd);
        if (!result.empty()) result += lineEnd;
        result += "[" + std::string(section) + "]" + std::string(lineEnd);
    }
    if (!at || *at >= lines.size()) add();
    return result;
}

}  // namespace script_lines
