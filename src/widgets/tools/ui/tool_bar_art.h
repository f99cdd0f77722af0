// SPDX-License-Identifier: MIT
#pragma once

#include <wx/aui/auibar.h>

class wxDC;
class wxWindow;

/** Draws what marks the keyboard's place in a window that the program draws, inside a rectangle. */
void DrawFocusFrame(wxDC& dc, const wxWindow& window, const wxRect& place);
/** The look of the program's toolbars; the toolbar that it is given to owns it. */
[[nodiscard]] wxAuiToolBarArt* MakeToolBarArt();
/** Shows a bar's arrow to the menu of its tools only while some of them do not fit. */
void ShowArrowWhereNeeded(wxAuiToolBar& bar);
