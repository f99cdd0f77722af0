// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "widgets/file_dialog_text.h"

class wxFileDialog;

/** Features of GTK's file chooser that the toolkit's file dialog lacks: filters that ignore the letter case,
 * and names that are not converted by the locale. Paths are UTF-8. */
namespace file_chooser {

/** Replaces the dialog's kinds of files and chooses the first. Patterns ignore the case of ASCII letters. */
void SetFilters(wxFileDialog& dialog, const std::vector<file_dialog_text::CFilter>& filters);
/** Shows a folder; one that does not exist changes nothing. */
void SetFolder(wxFileDialog& dialog, const std::string& folder);
/** Save dialogs only: sets the name in the entry. */
void SetName(wxFileDialog& dialog, const std::string& name);
[[nodiscard]] std::string Name(wxFileDialog& dialog);
/** The path that is chosen now; empty when there is none. */
[[nodiscard]] std::string ChosenPath(wxFileDialog& dialog);
/** Save dialogs only: keeps the extension of the name in step with the chosen kind. */
void FollowFilter(wxFileDialog& dialog, const std::vector<file_dialog_text::CFilter>& filters);

}  // namespace file_chooser
