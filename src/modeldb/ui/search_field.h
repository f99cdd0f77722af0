// SPDX-License-Identifier: MIT
#pragma once

class wxTextCtrl;
class wxWindow;

/** A field for a text to search for, with a symbol that clears it. Escape clears it, too. */
[[nodiscard]] wxTextCtrl* MakeSearchField(wxWindow* parent);
