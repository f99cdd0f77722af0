// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

/** What a page says to people, in one language. A value, since looking texts up is for the main thread and pages are
 * written on others. */
struct CPageTexts {
    std::string language = "en";               ///< for the page's lang attribute: "de", "pt-BR"
    std::map<std::string, std::string> texts;  ///< by the viewer's keys, UTF-8

    /** In the program's language. Main thread only. */
    [[nodiscard]] static CPageTexts InProgramLanguage();
    [[nodiscard]] static CPageTexts English();
    /** The text of a key; the English one where this language has none, empty for an unknown key. */
    [[nodiscard]] std::string Of(const std::string& key) const;
};
