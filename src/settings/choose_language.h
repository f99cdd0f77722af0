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
 * thread, when there is a wxApp and GTK has not started, which reads the direction of writing then. code is a language code such as "de" or "pt_BR"; "en", a code without a catalogue and a text that is no code mean
 * English. Catalogues are "languages/CODE/CATALOGUE.mo" in the program's data. */
void SetLanguage(std::wstring_view code);

/** For programs with windows, at their start: loads settings.ini and the texts of its Language. Where it names none, the setting
 * becomes the best of the languages that the desktop asks for. */
void LoadSettingsAndTexts();

/** A language for each folder, in their order. One whose name nobody here knows is called as its folder. */
void GetLanguageNames(const std::vector<std::wstring>& folders, std::vector<CLanguageInfo>& infos);

}  // namespace lng
