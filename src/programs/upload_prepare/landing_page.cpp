// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/landing_page.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "programs/upload_prepare/fill_template.h"
#include "programs/upload_prepare/upload_texts.h"

namespace {

using CJson = nlohmann::json;
constexpr std::uint64_t kMostBytes = 4 << 20;

CResult<std::string> ReadText(const std::string& path) {
    const auto bytes = file_util_ex::ReadPlainFile(path, kMostBytes);
    if (!bytes) return bytes.Error();
    return std::string(reinterpret_cast<const char*>(bytes.Value().data()), bytes.Value().size());
}

/** Puts the texts of one language into values, named "text." and their key. */
void TakeTexts(const CJson& texts, const std::string& language, CTemplateValues& values) {
    const auto found = texts.find(language);
    if (found == texts.end() || !found->is_object()) return;
    for (const auto& [key, text] : found->items())
        if (text.is_string()) values["text." + key] = text.get<std::string>();
}

}  // namespace

CResult<std::string> MakeLandingPage(const std::string& templateFolder, const CLandingPage& facts) {
    const CResult<std::string> page = ReadText(file_util_ex::MakePath(templateFolder, "index.html"));
    if (!page) return page.Error();
    const std::string textsPath = file_util_ex::MakePath(templateFolder, "texts.json");
    const CResult<std::string> textsFile = ReadText(textsPath);
    if (!textsFile) return textsFile.Error();
    const CJson texts = CJson::parse(textsFile.Value(), nullptr, false);
    if (!texts.is_object())
        return CError{EErrorCode::BadFormat, lng::Mark("the template of the page is damaged"), textsPath};

    CTemplateValues values{{"title", facts.title},
                           {"lang", "en"},
                           {"page", EscapedForAddress(facts.page)},
                           {"picture", EscapedForAddress(facts.picture)},
                           {"download", EscapedForAddress(facts.download)}};
    TakeTexts(texts, "en", values);
    const std::string base = facts.language.substr(0, facts.language.find('-'));
    for (const std::string& language : {base, facts.language}) {
        if (texts.contains(language)) values["lang"] = language;
        TakeTexts(texts, language, values);
    }
    const auto point = values.find("text.decimalPoint");
    values["size"] =
        SizeText(facts.downloadBytes, point != values.end() ? std::string_view(point->second) : ".");
    return FillTemplate(page.Value(), values);
}

std::string LanguageOfPage(std::string_view html) {
    constexpr std::string_view kMark = "<html lang=\"";
    constexpr std::size_t kFar = 4096, kLongest = 16;
    const std::size_t begin = html.substr(0, kFar).find(kMark);
    if (begin == html.npos) return "en";
    const std::string_view rest = html.substr(begin + kMark.size(), kLongest);
    const std::string language(rest.substr(0, rest.find('"')));
    const auto isPart = [](unsigned char c) { return c < 0x80 && (std::isalnum(c) != 0 || c == '-'); };
    return !language.empty() && std::ranges::all_of(language, isPart) ? language : "en";
}
