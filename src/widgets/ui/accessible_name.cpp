// SPDX-License-Identifier: MIT
#include "widgets/ui/accessible_name.h"

#include <gtk/gtk.h>
#include <wx/window.h>

#include "files/file_util_ex.h"

void SetAccessibleName(wxWindow& window, const std::wstring& name) {
    window.SetName(name);
    if (GtkWidget* widget = window.GetHandle())
        atk_object_set_name(gtk_widget_get_accessible(widget), file_util_ex::ConvertToUTF8(name).c_str());
}
