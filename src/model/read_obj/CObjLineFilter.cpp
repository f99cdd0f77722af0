// SPDX-License-Identifier: MIT
#include "model/read_obj/CObjLineFilter.h"

#include <algorithm>

namespace {

constexpr std::size_t kWindow = std::size_t{1} << 16;
constexpr std::size_t kMaxLibraries = 64;
constexpr std::size_t kMaxName = 1024;
constexpr std::string_view kBlanks = " \t";

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view WithoutLineEnd(std::string_view line) {
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
    return line;
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bool HasComment(std::string_view line) {
    return line.find('#') != std::string_view::npos;
}

/** What the line says, without its end and the comment behind it. */
std::string_view Content(std::string_view line) {
    return WithoutLineEnd(line.substr(0, line.find('#')));
}

bool IsContinued(std::string_view line) {
    return WithoutLineEnd(line).ends_with('\\') && !HasComment(line);
}

/** True where one of the three coordinates has an n in it: nan, inf, 1.#QNAN, 1.#IND. */
bool HasNonNumber(std::string_view coordinates) {
    for (int i = 0; i < 3; ++i) {
        const std::size_t first = coordinates.find_first_not_of(kBlanks);
        if (first == std::string_view::npos) return false;
        coordinates.remove_prefix(first);
        const std::string_view token = coordinates.substr(0, coordinates.find_first_of(kBlanks));
        if (token.find_first_of("nN") != std::string_view::npos) return true;
        coordinates.remove_prefix(token.size());
    }
    return false;
}

}  // namespace

std::size_t CObjLineFilter::CutAfter(std::string_view text, std::size_t position) {
    while (position < text.size()) {
        std::size_t end = text.find_first_of("\r\n", position);
        if (end == std::string_view::npos) return text.size();
        const bool continued = end > 0 && text[end - 1] == '\\';
        end += text.substr(end, 2) == "\r\n" ? 2u : 1u;
        if (!continued) return end;
        position = end;
    }
    return text.size();
}

CObjLineFilter::int_type CObjLineFilter::underflow() {
    if (m_replacementWaits) return ShowReplacement();
    std::size_t windowBegin = m_position, windowEnd = m_position;
    while (m_position < m_text.size() && windowEnd - windowBegin < kWindow) {
        const EUse use = Judge(NextLine());
        if (use == EUse::Pass) {
            windowEnd = m_position;
            continue;
        }
        m_replacementWaits = use == EUse::Replaced;
        if (windowEnd > windowBegin) break;
        if (m_replacementWaits) return ShowReplacement();
        windowBegin = windowEnd = m_position;
    }
    if (windowEnd == windowBegin) return traits_type::eof();
    return Show(m_text.substr(windowBegin, windowEnd - windowBegin));
}

CObjLineFilter::int_type CObjLineFilter::ShowReplacement() {
    m_replacementWaits = false;
    return Show(m_replacement);
}

// The get area is not written to: nobody puts a character back.
CObjLineFilter::int_type CObjLineFilter::Show(std::string_view text) {
    char* first = const_cast<char*>(text.data());
    setg(first, first, first + text.size());
    return traits_type::to_int_type(text.front());
}

/** The line with its end: a line feed, a carriage return, or both. */
std::string_view CObjLineFilter::NextLine() {
    const auto look = [this](std::size_t& place, char what) {
        if (place < m_position || m_position == 0)
            place = std::min(m_text.find(what, m_position), m_text.size());
    };
    look(m_lineFeed, '\n');
    look(m_return, '\r');
    const std::size_t begin = m_position;
    std::size_t end = std::min(m_lineFeed, m_return);
    if (end < m_text.size()) end += m_text.substr(end, 2) == "\r\n" ? 2u : 1u;
    m_position = end;
    return m_text.substr(begin, end - begin);
}

CObjLineFilter::EUse CObjLineFilter::Judge(std::string_view line) {
    const EUse use = JudgeKind(line);
    if (use == EUse::Skip || line.size() <= kMaxLine) return use;
    ++m_droppedLines;
    return EUse::Skip;
}

CObjLineFilter::EUse CObjLineFilter::JudgeKind(std::string_view line) {
    const std::string_view body = line.substr(std::min(line.find_first_not_of(kBlanks), line.size()));
    const auto isKind = [body](std::string_view kind) {
        return body.starts_with(kind) && body.size() > kind.size() && IsBlank(body[kind.size()]);
    };
    const auto replaceBy = [this](std::string text) {
        m_replacement = std::move(text);
        return EUse::Replaced;
    };
    const auto rest = [body](std::size_t first) {
        return std::string(Trimmed(body.substr(first, kMaxName)));
    };
    if (isKind("v") || isKind("vt") || isKind("vn")) return JudgeVertex(line);
    // The loader would take the words of a comment for corners.
    if (isKind("f")) return IsContinued(line) || HasComment(line) ? Join(line) : EUse::Pass;
    if (isKind("o") || isKind("usemtl") || isKind("g")) return EUse::Pass;
    if (isKind("s")) return replaceBy(std::string("o ") + kSmoothingMark + rest(1) + "\n");
    // The loader takes a group line without a name only with a blank behind the letter.
    if (WithoutLineEnd(body) == "g") return replaceBy("g \n");
    if (isKind("l") || isKind("p")) return JudgeElement(line);
    if (isKind("mtllib") && m_libraries.size() < kMaxLibraries) m_libraries.push_back(rest(6));
    return EUse::Skip;
}

CObjLineFilter::EUse CObjLineFilter::JudgeVertex(std::string_view line) {
    if (IsContinued(line)) return Join(line);
    const std::size_t keyword = line.find('v');
    if (!IsBlank(line[keyword + 1]) || !HasNonNumber(line.substr(keyword + 1))) return EUse::Pass;
    m_replacement = "v 1e999 0 0\n";
    return EUse::Replaced;
}

CObjLineFilter::EUse CObjLineFilter::JudgeElement(std::string_view line) {
    if (line.size() > kMaxLine) return EUse::Pass;  // and so it is dropped and counted
    std::string joined;
    if (IsContinued(line)) {
        if (Join(line) == EUse::Skip) return EUse::Skip;
        line = joined = std::move(m_replacement);
    }
    const std::size_t keyword = line.find_first_of("lp");
    const int normal = line[keyword] == 'l' ? kLineNormal : kPointsNormal;
    m_replacement = "f " + std::to_string(kElementMark) + "//" + std::to_string(normal);
    m_replacement.append(Content(line.substr(keyword + 1))).push_back('\n');
    return EUse::Replaced;
}

CObjLineFilter::EUse CObjLineFilter::Join(std::string_view line) {
    m_replacement.clear();
    while (IsContinued(line) && m_replacement.size() <= kMaxLine) {
        std::string_view part = WithoutLineEnd(line);
        part.remove_suffix(1);
        m_replacement.append(part).push_back(' ');
        line = NextLine();
    }
    m_replacement.append(Content(line)).push_back('\n');
    if (m_replacement.size() <= kMaxLine) return EUse::Replaced;
    ++m_droppedLines;
    return EUse::Skip;
}
