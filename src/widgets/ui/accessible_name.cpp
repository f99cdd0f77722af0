// SPDX-License-Identifier: MIT
#include "widgets/ui/accessible_name.h"

#include <gtk/gtk.h>
#include <wx/window.h>

#include "files/file_util_ex.h"

GtkWidget* FocusWidgetOf(wxWindow& window) {
    if (window.m_wxwindow && !window.IsTopLevel()) return window.m_wxwindow;
    GtkWidget* widget = window.GetHandle();
    GtkWidget* inner = GTK_IS_SCROLLED_WINDOW(widget) ? gtk_bin_get_child(GTK_BIN(widget)) : nullptr;
    return inner ? inner : widget;
}

void SetAccessibleName(wxWindow& window, const std::wstring& name) {
    window.SetName(name);
    if (GtkWidget* widget = FocusWidgetOf(window))
        atk_object_set_name(gtk_widget_get_accessible(widget), file_util_ex::ConvertToUTF8(name).c_str());
}
