// SPDX-License-Identifier: MIT
#pragma once

class wxWindow;

/** Gives all fields of a window that hold one line the height that their text needs, where texts are enlarged; the toolkit
 * leaves room for half a line. A window that is laid out by a sizer grows as needed. */
void FitTextHeights(wxWindow& window);
