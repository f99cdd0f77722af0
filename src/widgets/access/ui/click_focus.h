// SPDX-License-Identifier: MIT
#pragma once

class wxWindow;

/** Lets the keyboard stay where it is when a button is clicked; keys still reach the button. */
void KeepFocusOnClick(wxWindow& button);
