// SPDX-License-Identifier: MIT
#include "widgets/access/ui/focus.h"

#include <gtk/gtk.h>
#include <wx/window.h>

#include "widgets/ui/accessible_name.h"

void KeepFocusOnClick(wxWindow& button) {
    gtk_widget_set_focus_on_click(button.GetHandle(), FALSE);
}

void LetTakeFocus(wxWindow& window) {
    gtk_widget_set_can_focus(FocusWidgetOf(window), TRUE);
}

void KeepFocusOff(wxWindow& window) {
    gtk_widget_set_can_focus(FocusWidgetOf(window), FALSE);
}
