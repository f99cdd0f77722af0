// SPDX-License-Identifier: MIT
#include "export/webgl/CPageTexts.h"

#include <algorithm>
#include <array>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "settings/choose_language.h"

namespace {

struct CEntry {
    const char* key;
    const char* english;
};

// The keys and texts of web/src/texts.ts.
constexpr std::array kEntries = {
    CEntry{"noScript", lng::Mark("This page shows a 3D model. It needs JavaScript, which is switched off.")},
};

}  // namespace

CPageTexts CPageTexts::English() {
    CPageTexts texts;
    for (const CEntry& entry : kEntries) texts.texts.emplace(entry.key, entry.english);
    return texts;
}

CPageTexts CPageTexts::InProgramLanguage() {
    CPageTexts texts;
    texts.language = lng::Language();
    for (const CEntry& entry : kEntries)
        texts.texts.emplace(entry.key, file_util_ex::ConvertToUTF8(lng::Text(entry.english)));
    return texts;
}

std::string CPageTexts::Of(const std::string& key) const {
    if (const auto text = texts.find(key); text != texts.end()) return text->second;
    const auto entry = std::ranges::find_if(kEntries, [&](const CEntry& e) { return e.key == key; });
    return entry == kEntries.end() ? std::string() : entry->english;
}
