// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class wxButton;

/** Shows a text in the program's language. The toolkit takes a translated "Cancel" or "Close" for the
 * desktop's own button and hands it to GTK, which shows it in the desktop's language. */
void SetButtonLabel(wxButton& button, const std::wstring& text);
