// SPDX-License-Identifier: MIT
#include "widgets/access/ui/click_focus.h"

#include <gtk/gtk.h>
#include <wx/window.h>

void KeepFocusOnClick(wxWindow& button) {
    gtk_widget_set_focus_on_click(button.GetHandle(), FALSE);
}
