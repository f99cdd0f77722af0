// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class wxButton;

/** Sets a button's text so that it appears in the program's language. The toolkit's SetLabel turns a
 * translated "Cancel" or "Close" into GTK's stock button, which GTK shows in the desktop's language. */
void SetButtonLabel(wxButton& button, const std::wstring& text);
