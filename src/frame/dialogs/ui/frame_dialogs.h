// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

class wxFrame;
class wxWindow;

/** The small dialogs of the main window and the pages that its Help menu opens. All return when the user has
 * closed the dialog, except ShowShortcuts. */

/** Shows CSettingsDlg. True for OK: the settings then have the new values. */
bool EditSettings(wxWindow* parent);
/** Lets the user choose a language, which is stored in the settings for the next start; a message tells so when it is
 * another one. Cancel chooses English. */
void SelectLanguage(wxFrame& frame);
void ShowAbout(wxFrame& frame);
/** Opens the window with all keys beside the frame, or brings it to the front. */
void ShowShortcuts(wxFrame& frame);
/** Opens the maker's web site in the user's browser. A browser that cannot be started is ignored. */
void VisitWebsite();
/** Opens a page of the installed manual, by its name without an ending, in the user's browser. A message says
 * when the page is missing or cannot be opened. */
void OpenManual(std::string_view page = "index");
