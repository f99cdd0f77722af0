// SPDX-License-Identifier: MIT
#pragma once

#include <wx/defs.h>

class wxBitmap;
class wxDC;

/** The direction that windows are laid out in: that of the language in use. What wxApp::GetLayoutDirection returns. */
[[nodiscard]] wxLayoutDirection LayoutDirection();
/** Gives the toolkit below, once it has started, the same direction: it draws sliders, arrows of menus and its own dialogs. */
void SetToolkitDirection();
/** Where a bitmap is to be drawn so that it begins at left. The toolkit (3.2) places one by its physical width where x grows to the
 * left, which is the double one on a scaled display. */
[[nodiscard]] int PlaceOfBitmap(const wxDC& dc, const wxBitmap& bitmap, int left);
