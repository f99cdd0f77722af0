// SPDX-License-Identifier: MIT
#pragma once

#include "view/CViewToolState.h"

class wxWindow;

/** Shows the pointer of a tool over a window: a picture of the images folder, or one of the toolkit's own where that is
 * missing. */
void ShowToolCursor(wxWindow& window, EToolCursor cursor);
