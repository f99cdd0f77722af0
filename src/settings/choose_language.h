// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace lng {

/** Sets the language of all texts looked up from now on. Call it once, on the main thread. code is a language
 * code such as "de" or "pt_BR"; "en", a code without a catalogue and a text that is no code mean English.
 * Catalogues are "languages/CODE/CATALOGUE.mo" in the program's data. */
void SetLanguage(std::wstring_view code);

/** The language that texts are really in, as a web page names it ("de", "pt-BR"): "en" where there is no catalogue. Main
 * thread only. */
[[nodiscard]] std::string Language();

}  // namespace lng
