// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>

class wxDialog;
class wxSizer;

/** The row of standard buttons at the bottom of a dialog, labelled in the program's language. The first one is the
 * default, and all of them are from wxID_OK, wxID_CANCEL and wxID_CLOSE. */
[[nodiscard]] wxSizer* MakeDialogButtons(wxDialog& dialog, std::initializer_list<int> ids);
/** Labels the standard buttons that a dialog has in the program's language. */
void TranslateButtons(wxDialog& dialog);
