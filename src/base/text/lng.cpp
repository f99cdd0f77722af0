// SPDX-License-Identifier: MIT
#include "base/text/lng.h"

#include <wx/translation.h>

#include "base/text/utf8_text.h"

namespace lng_util_internal {

void SetDomain(CLanguageDomain& domain, std::string_view catalogue) {
    domain.catalogue = catalogue;
}

std::wstring DoGetResourceString(const char* englishText, const CLanguageDomain& domain) {
    const wxTranslations* translations = wxTranslations::Get();
    const wxString english = wxString::FromUTF8(englishText);
    const wxString* found =
        translations == nullptr || domain.catalogue.empty()
            ? nullptr
            : translations->GetTranslatedString(english, wxString::FromUTF8(domain.catalogue.c_str()));
    return found == nullptr ? english.ToStdWstring() : found->ToStdWstring();
}

}  // namespace lng_util_internal

namespace lng {
CLanguageDomain& Domain() {
    static CLanguageDomain domain;
    return domain;
}

std::wstring Text(const char* englishText) {
    return lng_util_internal::DoGetResourceString(englishText, Domain());
}

std::wstring Text(const char* englishText, std::wstring_view value) {
    std::wstring text = Text(englishText);
    const std::size_t at = text.find(L"%s");
    if (at != std::wstring::npos) text.replace(at, 2, value);
    return text;
}

std::wstring Text(const CError& error) {
    // A library's text may be in any encoding, and the empty text would yield the catalogue's header.
    const std::string sound = file_util_ex::ConvertToUTF8(ConvertFromUTF8(error.message));
    const std::wstring message = sound.empty() ? std::wstring() : Text(sound.c_str());
    return error.where.empty() ? message : ConvertFromUTF8(error.where) + L": " + message;
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
