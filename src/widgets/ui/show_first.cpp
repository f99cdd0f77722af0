// SPDX-License-Identifier: MIT
#include "widgets/ui/show_first.h"

#include <gtk/gtk.h>
#include <wx/toplevel.h>

void ShowFirst(wxTopLevelWindow& window) {
    const wxSize size = window.GetSize();
    const GtkAllocation first{0, 0, size.x, size.y};
    gtk_widget_set_allocation(window.GetHandle(), &first);  // GTK creates the desktop's window with this size
    window.Show();
}
