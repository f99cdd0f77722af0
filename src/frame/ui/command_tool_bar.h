// SPDX-License-Identifier: MIT
#pragma once

#include "frame/ui/command_menus.h"

class wxAuiToolBar;
class wxWindow;

/** The main toolbar with the tools of the command table; parent owns it. Its tools send menu events. */
[[nodiscard]] wxAuiToolBar* MakeToolBar(wxWindow* parent);
/** Shows for every tool whether it is enabled and pressed. */
void ShowStates(wxAuiToolBar& bar, const CStateOfCommand& stateOf);
