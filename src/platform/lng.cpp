// SPDX-License-Identifier: MIT
#include "platform/lng.h"

#include <wx/log.h>
#include <wx/translation.h>

#include <clocale>
#include <cstdlib>

#include "platform/file_util_ex.h"
#include "platform/std_file_paths.h"

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
namespace {

/** A code ends up in the names of files. */
bool IsLanguageCode(std::wstring_view code) {
    constexpr std::size_t kMaxLength = 32;
    constexpr std::wstring_view kCharacters =
        L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-@";
    return code.size() <= kMaxLength && code.find_first_not_of(kCharacters) == code.npos;
}

}  // namespace

CLanguageDomain& Domain() {
    static CLanguageDomain domain;
    return domain;
}

void SetLanguage(std::wstring_view code) {
    // For GTK's own dialogs. Messages alone: numbers never follow the locale. The system "C" has no
    // translations.
    std::setlocale(LC_MESSAGES, "");
    if (!IsLanguageCode(code)) code = L"en";
    if (!code.empty()) setenv("LANGUAGE", file_util_ex::ConvertToUTF8(code).c_str(), 1);
    const wxLogNull quiet;  // a missing catalogue means English
    auto* translations = new wxTranslations;
    wxTranslations::Set(translations);  // which owns it from now on
    wxFileTranslationsLoader::AddCatalogLookupPathPrefix(
        wxString::FromUTF8(std_file_paths::GetDataPath("languages").c_str()));
    translations->SetLanguage(wxString(code.data(), code.size()));
    translations->AddCatalog(wxString::FromUTF8(Domain().catalogue.c_str()));
    translations->AddStdCatalog();  // the toolkit's own texts
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
    // A library's words may be in any encoding; and the catalogue has its head under the empty text.
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
