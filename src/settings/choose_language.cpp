// SPDX-License-Identifier: MIT
#include "settings/choose_language.h"

#include <wx/log.h>
#include <wx/translation.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/std_file_paths.h"

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

void SetLanguage(std::wstring_view code) {
    // For GTK's own dialogs. Messages alone: numbers never follow the locale. The system "C" has
    // no translations.
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

std::string Language() {
    wxTranslations* translations = wxTranslations::Get();
    if (translations == nullptr || Domain().catalogue.empty()) return "en";
    std::string code =
        translations->GetBestTranslation(wxString::FromUTF8(Domain().catalogue.c_str()), "en").utf8_string();
    code.resize(std::min(code.find_first_of("@."), code.size()));
    std::ranges::replace(code, '_', '-');
    return code.empty() ? "en" : code;
}

}  // namespace lng
