// SPDX-License-Identifier: MIT
#pragma once

#include "frame/ui/command_menus.h"

class wxAuiToolBar;
class wxBitmapBundle;
class wxWindow;

/** All sizes of a picture of the images folder (an .ico file); empty when it is not there. */
[[nodiscard]] wxBitmapBundle LoadIcon(const char* fileName);
/** The main toolbar with the tools of the command table; parent owns it. Its tools send menu events. */
[[nodiscard]] wxAuiToolBar* MakeToolBar(wxWindow* parent);
/** Enables and presses all tools. */
void ShowStates(wxAuiToolBar& bar, const CStateOfCommand& stateOf);
