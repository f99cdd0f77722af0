// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"

namespace lng {

/** The code of the installed language that the code of a language or locale asks for ("de_AT.UTF-8" finds "de", "pt" finds
 * "pt_BR"); empty for none. folders: as std_file_paths::GetLngDirNames gives them. */
[[nodiscard]] std::wstring InstalledLanguage(std::string_view code, const std::vector<std::wstring>& folders);

/** The best installed language for those that the environment names, as gettext reads it: LANGUAGE, a list, unless the
 * locale (LC_ALL, LC_MESSAGES, LANG) is "C"; else the locale. "en" where none is installed. */
[[nodiscard]] std::wstring DesktopLanguage();

/** Loads the catalogue of an installed language, such as "de" or "pt_BR", for all texts looked up from now on. For "en", any
 * other code, and a catalogue that is broken all texts are English. */
void LoadCatalogue(std::wstring_view code);
/** For a program of the command line: texts in DesktopLanguage from now on; the catalogue is loaded when the first of them is
 * looked up. */
void UseDesktopLanguage();
/** Text of an error for a terminal: UTF-8, and without marks of direction, so that its path can be copied. */
[[nodiscard]] std::string TextForTerminal(const CError& error);
/** English texts from now on, for what other programs read. */
void UseEnglish();

/** The language that texts are really in, as a web page names it ("de", "pt-BR"): "en" where there is no catalogue. */
[[nodiscard]] std::string Language();

}  // namespace lng
