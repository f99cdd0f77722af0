// SPDX-License-Identifier: MIT
#include "base/text/lng.h"

#include <algorithm>
#include <string>

#include "base/text/utf8_text.h"

namespace lng_util_internal {

void SetDomain(CLanguageDomain& domain, std::string_view catalogue) {
    domain.catalogue = catalogue;
}

std::wstring DoGetResourceString(const char* englishText, const CLanguageDomain& domain) {
    return lng::ConvertFromUTF8(domain.texts.Find(englishText).value_or(englishText));
}

}  // namespace lng_util_internal

namespace lng {
namespace {

void ReplaceFirst(std::wstring& text, std::wstring_view value) {
    const std::size_t at = text.find(L"%s");
    if (at != std::wstring::npos) text.replace(at, 2, value);
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
    std::wstring text = Text(englishText);
    ReplaceFirst(text, value);
    return text;
}

std::wstring TextN(const char* one, const char* many, std::uint64_t count) {
    const char* english = count == 1 ? one : many;
    std::wstring text = ConvertFromUTF8(Domain().texts.Find(one, count).value_or(english));
    ReplaceFirst(text, Number(count));
    return text;
}

std::wstring TextIn(const char* context, const char* englishText) {
    const std::string key = CCatalogue::Key(context, englishText);
    return ConvertFromUTF8(Domain().texts.Find(key).value_or(englishText));
}

std::wstring Text(const CError& error) {
    // A library's text may be in any encoding, and the empty text would yield the catalogue's header.
    const std::string sound = file_util_ex::ConvertToUTF8(ConvertFromUTF8(error.message));
    const std::wstring message = sound.empty() ? std::wstring() : Text(sound.c_str());
    return error.where.empty() ? message : ConvertFromUTF8(error.where) + L": " + message;
}

bool IsRightToLeft() {
    constexpr std::string_view kLanguages[] = {"ar", "ckb", "dv", "fa", "he", "ps", "sd", "ug", "ur", "yi"};
    const std::string_view code = Domain().language;
    return std::ranges::count(kLanguages, code.substr(0, code.find_first_of("_@"))) > 0;
}

std::wstring Isolated(std::wstring_view foreign) {
    constexpr wchar_t kFirstStrongIsolate = 0x2068, kPopDirectionalIsolate = 0x2069;
    if (!IsRightToLeft()) return std::wstring(foreign);
    return kFirstStrongIsolate + std::wstring(foreign) + kPopDirectionalIsolate;
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

std::wstring ConvertFromUTF8(std::string_view text) {
    return file_util_ex::ConvertFromUTF8W(text);
}

}  // namespace lng
