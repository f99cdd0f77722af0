// SPDX-License-Identifier: MIT
#include "settings/choose_language.h"

#include <wx/intl.h>
#include <wx/log.h>
#include <wx/translation.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "files/std_file_paths.h"
#include "settings/CSettings.h"

namespace lng {
namespace {

/** Texts of the toolkit that its own catalogues do not have in all languages: it finds them in ours. */
[[maybe_unused]] constexpr const char* kToolkitTexts[] = {
    Mark("&OK"),
    Mark("&Cancel"),
    Mark("&Close"),
    Mark("Usage: %s"),
    Mark("Unknown option '%s'"),
    Mark("Unknown long option '%s'"),
    Mark("Unexpected characters following option '%s'."),
    Mark("Option '%s' can't be negated"),
};

struct CName {
    std::wstring_view code, name;
};
/** Capital letters begin them, as they stand in a list. */
constexpr CName kNames[] = {
    {L"ar", L"العربية"}, {L"cs", L"Čeština"},    {L"de", L"Deutsch"},    {L"en", L"English"},
    {L"es", L"Español"}, {L"fr", L"Français"},   {L"it", L"Italiano"},   {L"ja", L"日本語"},
    {L"ko", L"한국어"},  {L"nl", L"Nederlands"}, {L"pl", L"Polski"},     {L"pt_BR", L"Português (Brasil)"},
    {L"ru", L"Русский"}, {L"tr", L"Türkçe"},     {L"uk", L"Українська"}, {L"zh_CN", L"简体中文"},
};

std::wstring NameOf(const std::wstring& code) {
    const auto* known = std::ranges::find(kNames, code, &CName::code);
    if (known != std::end(kNames)) return std::wstring(known->name);
    const wxLanguageInfo* info = wxLocale::FindLanguageInfo(code);
    return info == nullptr || info->DescriptionNative.empty() ? code : info->DescriptionNative.ToStdWstring();
}

/** In the system's locale "C", and without one, libraries look for no translations. Messages alone: numbers never follow
 * the locale. */
void AllowTranslations() {
    const char* locale = std::setlocale(LC_MESSAGES, "");
    if (locale == nullptr || std::string_view(locale) == "C" || std::string_view(locale) == "POSIX")
        std::setlocale(LC_MESSAGES, "C.UTF-8");
}

/** Chinese, Japanese and Korean write the same characters in different forms; fontconfig chooses the font by this. */
void SetFontLanguage(std::string code) {
    std::ranges::replace(code, '_', '-');
    setenv("FC_LANG", ascii_text::Lowered(code).c_str(), 1);
}

}  // namespace

void SetLanguage(std::wstring_view code) {
    LoadCatalogue(code);
    const std::string& language = Domain().language;
    AllowTranslations();
    setenv("LANGUAGE", language.c_str(), 1);  // for GTK
    SetFontLanguage(language);
    const wxLogNull quiet;  // a missing catalogue means English
    auto* translations = new wxTranslations;
    wxTranslations::Set(translations);  // which owns it from now on
    if (language == "en") return;
    wxFileTranslationsLoader::AddCatalogLookupPathPrefix(
        wxString::FromUTF8(std_file_paths::GetDataPath("languages").c_str()));
    translations->SetLanguage(wxString::FromUTF8(language.c_str()));
    // The toolkit's own texts; ours has what the toolkit's lacks.
    translations->AddCatalog(wxString::FromUTF8(Domain().catalogue.c_str()));
    translations->AddStdCatalog();
}

void LoadSettingsAndTexts() {
    lng_util_internal::SetDomain(Domain(), "viewer");
    (void)CSettings::LoadFile();  // without a file the defaults hold
    CSettings& settings = CSettings::Instance();
    settings.language.clear();
    settings.ReadAll();
    if (settings.language.empty()) settings.language = DesktopLanguage();
    LoadCatalogue(settings.language);
}

void GetLanguageNames(const std::vector<std::wstring>& folders, std::vector<CLanguageInfo>& infos) {
    infos.clear();
    for (const std::wstring& folder : folders) infos.push_back({folder, NameOf(folder)});
}

}  // namespace lng
