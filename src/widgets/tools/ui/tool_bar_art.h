// SPDX-License-Identifier: MIT
#pragma once

#include <wx/aui/auibar.h>

/** The look of the program's toolbars; the toolbar that it is given to owns it. */
[[nodiscard]] wxAuiToolBarArt* MakeToolBarArt();
/** Shows a bar's arrow to the menu of its tools only while some of them do not fit. */
void ShowArrowWhereNeeded(wxAuiToolBar& bar);
