// SPDX-License-Identifier: MIT
#include "script/script_text.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/text/ascii_text.h"
#include "base/text/code_pages.h"
#include "base/text/lng.h"
#include "base/text/utf16_text.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"

namespace script_text {
namespace {

enum EPage : std::size_t { kCyrillic, kCyrillicDos, kWestern, kWesternDos };

bool IsHigh(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}
bool IsLetter(char c) {
    return IsHigh(c) || (ascii_text::Lower(c) >= 'a' && ascii_text::Lower(c) <= 'z');
}

/** Cyrillic words have no ASCII letters, in Western ones most are. Programs for DOS put letters where those for
 * Windows have signs. */
EPage LikeliestPage(std::string_view bytes) {
    std::size_t ascii = 0, high = 0, lowHalf = 0;
    while (!bytes.empty()) {
        const auto end = std::find_if_not(bytes.begin(), bytes.end(), IsLetter);
        const std::string_view word = bytes.substr(0, static_cast<std::size_t>(end - bytes.begin()));
        const auto highInWord = static_cast<std::size_t>(std::count_if(word.begin(), word.end(), IsHigh));
        if (highInWord > 0) ascii += word.size() - highInWord;
        high += highInWord;
        constexpr unsigned char kHighHalf = 0xB0;
        lowHalf += static_cast<std::size_t>(std::count_if(word.begin(), word.end(), [](char c) {
            return IsHigh(c) && static_cast<unsigned char>(c) < kHighHalf;
        }));
        bytes.remove_prefix(std::min(word.size() + 1, bytes.size()));
    }
    const bool isDos = 2 * lowHalf > high;
    if (high > ascii) return isDos ? kCyrillicDos : kCyrillic;
    return isDos ? kWesternDos : kWestern;
}

}  // namespace

CResult<std::string> Load(std::string_view path) {
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(std::filesystem::path(path), error);
    if (error) return CError{EErrorCode::NotFound, lng::Mark("there is no such file"), std::string(path)};
    if (!file_util_ex::DoesFileExist(resolved.native()))
        return CError{EErrorCode::Unreadable, lng::Mark("this is no regular file"), std::string(path)};
    const auto bytes = file_util_ex::ReadPlainFile(resolved.native(), kMostBytes);
    if (!bytes) return CError{bytes.Error().code, bytes.Error().message, std::string(path)};
    const std::string_view text(reinterpret_cast<const char*>(bytes.Value().data()), bytes.Value().size());
    std::string converted = Utf16ToUtf8(text);
    return converted.empty() ? std::string(text) : std::move(converted);
}

std::string ForPeople(std::string_view value) {
    if (utf8_text::Decode(value)) return std::string(value);
    std::string text;
    for (const char32_t c : code_pages::Decode(value, LikeliestPage(value))) utf8_text::Append(text, c);
    return text;
}

}  // namespace script_text
