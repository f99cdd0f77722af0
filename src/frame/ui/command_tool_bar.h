// SPDX-License-Identifier: MIT
#pragma once

#include "frame/ui/command_menus.h"

class wxAuiToolBar;
class wxBitmapBundle;
class wxWindow;

/** Side of a tool's picture in device-independent pixels. */
constexpr int kToolIconSize = 24;

/** Loads an icon (.ico) of the images folder in this size, with all larger ones for denser displays; empty
 * when the file is missing. */
[[nodiscard]] wxBitmapBundle LoadIcon(const char* fileName, int size = kToolIconSize);
/** The main toolbar with the tools of the command table; parent owns it. Its tools send menu events. */
[[nodiscard]] wxAuiToolBar* MakeToolBar(wxWindow* parent);
/** Shows for every tool whether it is enabled and pressed. */
void ShowStates(wxAuiToolBar& bar, const CStateOfCommand& stateOf);
