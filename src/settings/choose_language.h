// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "settings/language_catalogue.h"

/** A language that the user may choose. */
struct CLanguageInfo {
    std::wstring code;  ///< its folder's name, the value of the setting Language
    std::wstring name;  ///< as those call it who speak it
};

namespace lng {

/** Sets the language of all texts looked up from now on, the toolkit's and GTK's among them. Call it once, on the main
 * thread. code is a language code such as "de" or "pt_BR"; "en", a code without a catalogue and a text that is no code mean
 * English. Catalogues are "languages/CODE/CATALOGUE.mo" in the program's data. */
void SetLanguage(std::wstring_view code);

/** A language for each folder, in their order. One whose name nobody here knows is called as its folder. */
void GetLanguageNames(const std::vector<std::wstring>& folders, std::vector<CLanguageInfo>& infos);

}  // namespace lng
