// SPDX-License-Identifier: MIT
#pragma once

#include "frame/ui/command_menus.h"

class wxAuiToolBar;
class wxBitmapBundle;
class wxWindow;

/** Side of a tool's picture in device-independent pixels. */
constexpr int kToolIconSize = 24;

/** A picture of the images folder (an .ico file) of that size, with all larger ones for denser displays;
 * empty when it is not there. */
[[nodiscard]] wxBitmapBundle LoadIcon(const char* fileName, int size = kToolIconSize);
/** The main toolbar with the tools of the command table; parent owns it. Its tools send menu events. */
[[nodiscard]] wxAuiToolBar* MakeToolBar(wxWindow* parent);
/** Enables and presses all tools. */
void ShowStates(wxAuiToolBar& bar, const CStateOfCommand& stateOf);
