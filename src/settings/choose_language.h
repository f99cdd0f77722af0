// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace lng {

/** Chooses the language of all texts looked up from now on, once per run: a code such as "de" or "pt_BR".
 * "en", codes without a catalogue and what is no code give English. Catalogues are
 * "languages/CODE/CATALOGUE.mo" in the program's data. */
void SetLanguage(std::wstring_view code);

}  // namespace lng
