// SPDX-License-Identifier: MIT
#pragma once

class wxTextCtrl;

/** Gives a text field the keys of text editing that the main window has commands for: Ctrl+X, Ctrl+C, Ctrl+V, Ctrl+Z,
 * Ctrl+Shift+Z and Home edit the text while the field has the focus. */
void GiveTextKeys(wxTextCtrl& field);
