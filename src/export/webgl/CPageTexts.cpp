// SPDX-License-Identifier: MIT
#include "export/webgl/CPageTexts.h"

#include <algorithm>
#include <array>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "settings/language_catalogue.h"

namespace {

struct CEntry {
    const char* key;
    const char* english;
};

// The keys and texts of web/src/texts.ts, and what the page itself says.
constexpr std::array kEntries = {
    CEntry{"toolbar", lng::Mark("View")},
    CEntry{"top", lng::Mark("Top view")},
    CEntry{"left", lng::Mark("Left view")},
    CEntry{"right", lng::Mark("Right view")},
    CEntry{"front", lng::Mark("Front view")},
    CEntry{"back", lng::Mark("Back view")},
    CEntry{"iso", lng::Mark("Isometric view")},
    CEntry{"cameras", lng::Mark("Cameras of the file")},
    CEntry{"reset", lng::Mark("Reset view")},
    CEntry{"play", lng::Mark("Play")},
    CEntry{"pause", lng::Mark("Pause")},
    CEntry{"frame", lng::Mark("Frame")},
    CEntry{"fullscreen", lng::Mark("Full screen")},
    CEntry{"download", lng::Mark("Download the model")},
    CEntry{"canvas",
           lng::Mark("3D model %1. Arrow keys turn it, plus and minus zoom, Home resets the view.")},
    CEntry{"loading", lng::Mark("Loading…")},
    CEntry{"shown", lng::Mark("%1 is shown")},
    CEntry{
        "noWebGL",
        lng::Mark("This browser cannot show 3D pictures, because it has no WebGL 2, or it is switched off.")},
    CEntry{
        "noUnpacking",
        lng::Mark("This browser is too old to unpack the scene. Any browser since 2023 can show this page.")},
    CEntry{"noScene", lng::Mark("The scene of this page cannot be read. Is a file missing beside the page?")},
    CEntry{"broken", lng::Mark("The scene of this page is damaged.")},
    CEntry{"noMemory", lng::Mark("There is too little graphics memory to show this scene.")},
    CEntry{"lost",
           lng::Mark("The graphics card has dropped the picture. It is drawn again as soon as it is back.")},
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
