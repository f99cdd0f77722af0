// SPDX-License-Identifier: MIT
#include "base/text/lng.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "base/text/character_kind.h"
#include "base/text/number_text.h"
#include "base/text/utf8_text.h"

namespace lng_util_internal {

CLanguageDomain& Loaded(CLanguageDomain& domain) {
    static std::recursive_mutex guard;
    const std::lock_guard lock(guard);
    if (const auto load = std::exchange(domain.load, nullptr)) load(domain);
    return domain;
}

void SetDomain(CLanguageDomain& domain, std::string_view catalogue) {
    domain = CLanguageDomain();
    domain.catalogue = catalogue;
}

std::wstring DoGetResourceString(const char* englishText, CLanguageDomain& domain) {
    return lng::ConvertFromUTF8(Loaded(domain).texts.Find(englishText).value_or(englishText));
}

}  // namespace lng_util_internal

namespace lng {
namespace {

using lng_util_internal::Loaded;

/** Replaces each "%s" by the value at its place; a value may hold "%s", too. */
std::wstring Filled(std::wstring text, std::initializer_list<std::wstring_view> values) {
    std::size_t at = 0;
    for (const std::wstring_view value : values) {
        at = text.find(L"%s", at);
        if (at == text.npos) break;
        text.replace(at, 2, value);
        at += value.size();
    }
    return text;
}

constexpr wchar_t kRightToLeftMark = 0x200F, kFirstStrongIsolate = 0x2068, kPopDirectionalIsolate = 0x2069,
                  kReplacement = 0xFFFD;

/** A value of a sentence without what reaches beyond it. What was isolated inside of it, as in a sentence of ours, stays so. */
std::wstring KeptToItself(std::wstring_view value) {
    std::wstring kept(value);
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        if (kept[i] == kFirstStrongIsolate)
            open.push_back(i);
        else if (kept[i] == kPopDirectionalIsolate && !open.empty())
            open.pop_back();
        else if (character_kind::ReachesBeyondItself(kept[i]))
            kept[i] = kReplacement;
    }
    for (const std::size_t i : open) kept[i] = kReplacement;
    return kept;
}

std::wstring Form(const char* one, const char* many, std::uint64_t count) {
    return ConvertFromUTF8(Loaded(Domain()).texts.Find(one, count).value_or(count == 1 ? one : many));
}

}  // namespace

CLanguageDomain& Domain() {
    static CLanguageDomain domain;
    return domain;
}

std::wstring Text(const char* englishText) {
    return lng_util_internal::DoGetResourceString(englishText, Domain());
}

std::wstring Text(const char* englishText, std::wstring_view value) {
    return Filled(Text(englishText), {Isolated(value)});
}

std::wstring TextN(const char* one, const char* many, std::uint64_t count) {
    return Filled(Form(one, many, count), {Number(count)});
}

std::wstring TextN(const char* one, const char* many, std::uint64_t count, std::wstring_view second) {
    return Filled(Form(one, many, count), {Number(count), Isolated(second)});
}

std::string TextUtf8(const char* englishText, std::initializer_list<std::string_view> values) {
    std::string text = file_util_ex::ConvertToUTF8(Text(englishText));
    std::size_t at = 0;
    for (const std::string_view value : values) {
        at = text.find("%s", at);
        if (at == text.npos) break;
        text.replace(at, 2, value);  // as it is: a path may hold any bytes
        at += value.size();
    }
    return text;
}

std::wstring TextIn(const char* context, const char* englishText) {
    const std::string key = CCatalogue::Key(context, englishText);
    return ConvertFromUTF8(Loaded(Domain()).texts.Find(key).value_or(englishText));
}

std::wstring Labelled(std::wstring_view name, std::wstring_view text) {
    return Filled(Text("%s: %s"), {name, text});
}

std::wstring Text(const CError& error) {
    // A library's text may be in any encoding, and the empty text would yield the catalogue's header.
    const std::string sound = file_util_ex::ConvertToUTF8(ConvertFromUTF8(error.message));
    const std::wstring message = sound.empty() ? std::wstring() : Text(sound.c_str());
    return error.where.empty() ? message : Labelled(Isolated(ConvertFromUTF8(error.where)), message);
}

bool IsRightToLeft() {
    constexpr std::string_view kLanguages[] = {"ar", "ckb", "dv", "fa", "he", "ps", "sd", "ug", "ur", "yi"};
    const std::string_view code = Loaded(Domain()).language;
    return std::ranges::count(kLanguages, code.substr(0, code.find_first_of("_@"))) > 0;
}

std::wstring Isolated(std::wstring_view foreign) {
    std::wstring kept = KeptToItself(foreign);
    if (!IsRightToLeft()) return kept;
    // The mark before it is for what looks at a line's first letter alone, isolated or not, to find the line's direction.
    return std::wstring{kRightToLeftMark, kFirstStrongIsolate} + kept + kPopDirectionalIsolate;
}

std::wstring Number(std::uint64_t number) {
    // The catalogue's entry for this text is the language's separator.
    const std::wstring separator = Text(",");
    std::wstring text = std::to_wstring(number);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, separator);
    }
    return text;
}

std::wstring Decimal(double number, int decimals) {
    std::wstring text = ConvertFromUTF8(number_text::FormatFixed(number, decimals));
    // The catalogue's entry for this text is the language's decimal point.
    if (const std::size_t point = text.find(L'.'); point != text.npos) text.replace(point, 1, Text("."));
    return text;
}

std::wstring Size(std::uint64_t bytes) {
    if (bytes < 1000) return Isolated(TextN("%s byte", "%s bytes", bytes));
    constexpr std::array kUnits = {Mark("%s kB"), Mark("%s MB"), Mark("%s GB"), Mark("%s TB")};
    constexpr double kStep = 1000, kRoundedToStep = 999.95;
    double value = static_cast<double>(bytes) / kStep;
    std::size_t unit = 0;
    for (; value >= kRoundedToStep && unit + 1 < kUnits.size(); ++unit) value /= kStep;
    return Isolated(Filled(Text(kUnits.at(unit)), {Decimal(value, 1)}));
}

std::wstring ConvertFromUTF8(std::string_view text) {
    return file_util_ex::ConvertFromUTF8W(text);
}

}  // namespace lng
