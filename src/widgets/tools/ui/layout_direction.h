// SPDX-License-Identifier: MIT
#pragma once

#include <wx/defs.h>

/** The direction that windows are laid out in: that of the language in use. What wxApp::GetLayoutDirection returns. */
[[nodiscard]] wxLayoutDirection LayoutDirection();
/** Gives the toolkit below, once it has started, the same direction: it draws sliders, arrows of menus and its own dialogs. */
void SetToolkitDirection();
