// SPDX-License-Identifier: MIT
#pragma once

class wxWindow;

/** Lets the keyboard stay where it is when a button is clicked; keys still reach the button. */
void KeepFocusOnClick(wxWindow& button);
/** Lets a window that is drawn take the keyboard though the toolkit thinks that its children would. */
void LetTakeFocus(wxWindow& window);
/** Tells screen readers where the keyboard is in a window, unless another one of the program is active. After a menu's command that was chosen without opening the menu
 * the toolkit tells them that it is nowhere. */
void TellFocusAgain(wxWindow& topLevel);
/** Whether screen readers hear of each value that a slider takes. One that moves by itself floods them, so that they say nothing
 * of anything else. */
void TellValues(wxWindow& slider, bool tells);
/** Keeps Tab from a window that is drawn, for which its AcceptsFocus is not asked. */
void KeepFocusOff(wxWindow& window);
