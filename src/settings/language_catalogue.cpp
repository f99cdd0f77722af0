// SPDX-License-Identifier: MIT
#include "settings/language_catalogue.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"

namespace lng {
namespace {

/** Which language stands for another that has no catalogue: where one code is written in several ways, and where people
 * read both. */
constexpr std::pair<std::string_view, std::string_view> kStandIns[] = {
    {"pt", "pt_BR"}, {"pt_PT", "pt_BR"}, {"zh", "zh_CN"}, {"zh_SG", "zh_CN"}, {"zh_Hans", "zh_CN"}};

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

bool IsPlainLocale(std::string_view locale) {
    return locale == "C" || locale == "POSIX";
}

/** Codes with ":" between them. */
std::string LanguagesWanted() {
    std::string locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (locale.empty()) locale = Variable(name);
    const std::string list = Variable("LANGUAGE");
    return list.empty() || IsPlainLocale(locale) ? locale : list;
}

std::string FolderOf(std::string_view code) {
    return file_util_ex::MakePath(std_file_paths::GetDataPath("languages"), code);
}

}  // namespace

std::wstring InstalledLanguage(std::string_view code, const std::vector<std::wstring>& folders) {
    code = code.substr(0, code.find_first_of(".@"));
    const std::string_view language = code.substr(0, code.find('_'));
    const auto* standIn =
        std::ranges::find(kStandIns, code, &std::pair<std::string_view, std::string_view>::first);
    for (const std::string_view name :
         {code, standIn == std::end(kStandIns) ? code : standIn->second, language}) {
        std::wstring wide = ConvertFromUTF8(name);
        if (!name.empty() && std::ranges::count(folders, wide) > 0) return wide;
    }
    return {};
}

std::wstring DesktopLanguage() {
    std::vector<std::wstring> folders;
    std_file_paths::GetLngDirNames(folders);
    const std::string wanted = LanguagesWanted();
    for (std::string_view rest = wanted; !rest.empty();) {
        const std::string_view code = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(code.size() + 1, rest.size()));
        if (IsPlainLocale(code)) break;
        if (std::wstring found = InstalledLanguage(code, folders); !found.empty()) return found;
    }
    return L"en";
}

void LoadCatalogue(std::wstring_view code) {
    CLanguageDomain& domain = Domain();
    lng_util_internal::SetDomain(domain, std::string(domain.catalogue));
    std::vector<std::wstring> folders;
    std_file_paths::GetLngDirNames(folders);
    const std::string name =
        file_util_ex::ConvertToUTF8(InstalledLanguage(file_util_ex::ConvertToUTF8(code), folders));
    if (name.empty() || name == "en" || domain.catalogue.empty()) return;
    CResult<std::vector<std::byte>> bytes = file_util_ex::ReadWholeFile(
        file_util_ex::MakePath(FolderOf(name), domain.catalogue + ".mo"), CCatalogue::kMaxBytes);
    if (!bytes) return;
    CResult<CCatalogue> texts = CCatalogue::Read(std::move(bytes).Value());
    if (!texts) return;
    domain.texts = std::move(texts).Value();
    domain.language = name;
}

void UseDesktopLanguage() {
    lng_util_internal::SetDomain(Domain(), "viewer");
    Domain().load = [](CLanguageDomain&) { LoadCatalogue(DesktopLanguage()); };
}

std::string TextForTerminal(const CError& error) {
    const std::string message = TextUtf8(error.message.c_str());
    return error.where.empty() ? message : error.where + ": " + message;
}

void UseEnglish() {
    lng_util_internal::SetDomain(Domain(), {});
}

std::string Language() {
    std::string code = lng_util_internal::Loaded(Domain()).language;
    std::ranges::replace(code, '_', '-');
    return code;
}

}  // namespace lng
