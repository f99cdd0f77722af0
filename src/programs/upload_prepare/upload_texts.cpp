// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/upload_texts.h"

#include <array>

#include "base/text/ascii_text.h"
#include "base/text/number_text.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"

std::string SizeText(std::uint64_t bytes, std::string_view decimalPoint) {
    constexpr std::array kUnits{"bytes", "KB", "MB", "GB", "TB"};
    constexpr double kStep = 1000, kWholeFrom = 9.95;
    auto size = static_cast<double>(bytes);
    std::size_t unit = 0;
    // What would be written as 1000 is 1 of the next unit.
    for (; size >= (unit == 0 ? kStep : kStep - 0.5) && unit + 1 < kUnits.size(); ++unit) size /= kStep;
    std::string number = number_text::FormatFixed(size, unit == 0 || size >= kWholeFrom ? 0 : 1);
    if (const std::size_t point = number.find('.'); point != number.npos)
        number.replace(point, 1, decimalPoint);
    return number + ' ' + kUnits.at(unit);
}

std::string ShownName(const std::string& modelName) {
    constexpr char kReplacement = '_';
    return utf8_text::Printable(modelName, kReplacement);
}

std::string TitleOf(const std::string& modelName) {
    std::string title = ShownName(modelName);
    for (const char* ending : {"3ds", "zip", "obj", "orv"})
        if (ascii_text::EqualNoCase(file_util_ex::GetFileExt(title), ending)) {
            title = file_util_ex::GetFileNameWithPath(title);
            break;
        }
    const std::string_view trimmed = ascii_text::Trimmed(title);
    return trimmed.empty() ? "Model" : std::string(trimmed);
}

std::string RemoteFolderName(const std::string& modelName, std::time_t now) {
    constexpr std::size_t kMostBytes = 80;
    // What some system or some part of rclone gives a meaning; blanks at the ends and dots have one, too.
    constexpr std::string_view kMeaning = "/\\:*?\"<>|%#&$`~'{}[]()!;^=,";
    std::string name;
    for (const char c : TitleOf(modelName)) {
        const char safe = kMeaning.find(c) != kMeaning.npos ? '_' : c;
        if (safe == ' ' && name.ends_with(' ')) continue;
        name += safe;
    }
    name = std::string(ascii_text::Trimmed(utf8_text::Cut(name, kMostBytes), " ._-"));
    std::tm time{};
    (void)::localtime_r(&now, &time);
    std::array<char, 32> text{};
    (void)std::strftime(text.data(), text.size(), "%Y-%m-%d %H.%M.%S", &time);
    return (name.empty() ? "Model" : name) + ' ' + text.data();
}
