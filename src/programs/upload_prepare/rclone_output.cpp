// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/rclone_output.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/text/ascii_text.h"
#include "base/text/utf8_text.h"

using CJson = nlohmann::json;

namespace rclone_output {
namespace {

bool IsLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (ascii_text::Lower(c) >= 'a' && ascii_text::Lower(c) <= 'z');
}

bool IsRemoteName(std::string_view name) {
    constexpr std::string_view kMarks = "_-.+@ ";
    const auto isSound = [kMarks](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || IsLetterOrDigit(c) || kMarks.find(c) != kMarks.npos;
    };
    return !name.empty() && name.front() != '-' && name.front() != ' ' && name.back() != ' ' &&
           std::ranges::all_of(name, isSound) && utf8_text::Printable(name, '?') == name;
}

std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return ascii_text::Trimmed(line, "\r");
}

/** A count that may be written as any number. */
std::uint64_t CountIn(const CJson& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_number()) return 0;
    const auto value = found->get<double>();
    constexpr double kMost = 9e18;
    return std::isfinite(value) ? static_cast<std::uint64_t>(std::clamp(value, 0.0, kMost)) : 0;
}

std::string TextIn(const CJson& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

/** "2026/11/22 09:20:49 " */
std::string_view WithoutDate(std::string_view line) {
    constexpr std::string_view kForm = "0000/00/00 00:00:00 ";
    if (line.size() < kForm.size()) return line;
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        const bool isDigit = line[i] >= '0' && line[i] <= '9';
        if (kForm[i] == '0' ? !isDigit : line[i] != kForm[i]) return line;
    }
    return line.substr(kForm.size());
}

/** Keys and tokens of services are longer than the words of a sentence and the names of most files. */
std::string WithoutKeys(std::string_view text) {
    constexpr std::size_t kLongestWord = 45;
    constexpr std::string_view kMarks = "-_.~+";
    std::string shown;
    while (!text.empty()) {
        const auto isOfWord = [kMarks](char c) {
            return IsLetterOrDigit(c) || kMarks.find(c) != kMarks.npos;
        };
        const auto end = std::ranges::find_if_not(text, isOfWord);
        const auto length = static_cast<std::size_t>(end - text.begin());
        shown += length > kLongestWord ? "..." : text.substr(0, length);
        if (length < text.size()) shown += text[length];
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return shown;
}

}  // namespace

std::vector<std::string> RemotesOf(std::string_view text, std::string_view type) {
    constexpr std::size_t kMost = 100;
    std::vector<std::string> names;
    while (!text.empty() && names.size() < kMost) {
        const std::string_view line = TakeLine(text);
        const std::size_t colon = line.find(':');
        if (colon == line.npos || ascii_text::Trimmed(line.substr(colon + 1)) != type) continue;
        if (const std::string_view name = line.substr(0, colon); IsRemoteName(name)) names.emplace_back(name);
    }
    return names;
}

CLine ReadLine(std::string_view line) {
    const CJson json = CJson::parse(line, nullptr, false);
    if (!json.is_object()) return {{}, ShownLine(line)};
    CLine read;
    if (const auto stats = json.find("stats"); stats != json.end() && stats->is_object()) {
        read.progress = CProgress{CountIn(*stats, "bytes"), CountIn(*stats, "totalBytes"),
                                  CountIn(*stats, "transfers"), CountIn(*stats, "totalTransfers")};
        read.progress->bytes = std::min(read.progress->bytes, read.progress->totalBytes);
        read.progress->files = std::min(read.progress->files, read.progress->totalFiles);
        return read;  // it may be said as loudly as an error
    }
    const std::string level = TextIn(json, "level");
    if (level == "error" || level == "critical" || level == "alert" || level == "emergency")
        read.error = ShownLine(TextIn(json, "msg"));
    return read;
}

std::string ShownLine(std::string_view line) {
    constexpr std::size_t kMostBytes = 300;
    const std::string text = WithoutKeys(WithoutDate(ascii_text::Trimmed(line)));
    return utf8_text::Printable(utf8_text::Cut(text, kMostBytes), ' ');
}

std::string AddressIn(std::string_view text) {
    constexpr std::size_t kLongest = 2000;
    const std::string_view line = ascii_text::Trimmed(TakeLine(text));
    constexpr std::array<std::string_view, 2> kDrive{"https://drive.google.com/", "https://docs.google.com/"};
    const auto isSound = [](char c) { return c > ' ' && c < '\x7f' && c != '\\'; };
    const bool isOfDrive =
        std::ranges::any_of(kDrive, [line](auto start) { return line.starts_with(start); });
    return isOfDrive && line.size() < kLongest && std::ranges::all_of(line, isSound) ? std::string(line)
                                                                                     : std::string();
}

std::string FolderAddressIn(std::string_view text, std::string_view folder) {
    constexpr std::size_t kLongestId = 200;
    const CJson json = CJson::parse(text, nullptr, false);
    if (!json.is_array()) return {};
    for (const CJson& entry : json) {
        if (!entry.is_object() || TextIn(entry, "Name") != folder) continue;
        const std::string id = TextIn(entry, "ID");
        const auto isSound = [](char c) { return IsLetterOrDigit(c) || c == '-' || c == '_'; };
        if (!id.empty() && id.size() <= kLongestId && std::ranges::all_of(id, isSound))
            return "https://drive.google.com/drive/folders/" + id;
    }
    return {};
}

}  // namespace rclone_output
