// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class wxWindow;
using GtkWidget = struct _GtkWidget;

/** The widget of a window that takes the keyboard's focus: inside its scroll bars, where it has some; of a dialog or a frame
 * the whole. Null before the window is created. */
[[nodiscard]] GtkWidget* FocusWidgetOf(wxWindow& window);
/** Sets a window's name for the toolkit and for screen readers, which the toolkit's SetName does
 * not reach. */
void SetAccessibleName(wxWindow& window, const std::wstring& name);
