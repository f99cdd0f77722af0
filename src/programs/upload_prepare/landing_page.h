// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"

/** What a landing page shows. Texts are UTF-8, paths relative to the landing page. */
struct CLandingPage {
    std::string title;
    std::string language;  ///< "en", "de", "pt-BR": of the model's page
    std::string page;      ///< path of the model's page
    std::string picture;   ///< path of a picture of it; empty: none
    std::string download;  ///< path of the archive; empty: none
    std::uint64_t downloadBytes = 0;
};

/** The landing page: index.html of a template folder, filled. Its texts come from texts.json there, in the language, or
 * that without its region, or English. */
[[nodiscard]] CResult<std::string> MakeLandingPage(const std::string& templateFolder,
                                                   const CLandingPage& facts);

/** The value of the lang attribute with which a page begins; "en" where it has none. */
[[nodiscard]] std::string LanguageOfPage(std::string_view html);
