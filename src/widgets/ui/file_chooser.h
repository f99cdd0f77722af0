// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "widgets/file_dialog_text.h"

class wxFileDialog;

/** What the toolkit's file dialog leaves out of the desktop's chooser beneath it: any letter case in its
 * filters, and names that do not pass through the locale. Paths are UTF-8. */
namespace file_chooser {

/** Replaces the dialog's kinds of files; each matches in any case of ASCII letters. The
 * first one is chosen. */
void SetFilters(wxFileDialog& dialog, const std::vector<file_dialog_text::CFilter>& filters);
/** A folder that is missing is not shown. */
void SetFolder(wxFileDialog& dialog, const std::string& folder);
/** Save dialogs only: the name in the entry. */
void SetName(wxFileDialog& dialog, const std::string& name);
[[nodiscard]] std::string Name(wxFileDialog& dialog);
/** The path that is chosen now; empty when there is none. */
[[nodiscard]] std::string ChosenPath(wxFileDialog& dialog);
/** Save dialogs only: keeps the extension of the name in step with the chosen kind. */
void FollowFilter(wxFileDialog& dialog, const std::vector<file_dialog_text::CFilter>& filters);

}  // namespace file_chooser
