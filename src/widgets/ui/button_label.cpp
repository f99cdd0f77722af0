// SPDX-License-Identifier: MIT
#include "widgets/ui/button_label.h"

#include <gtk/gtk.h>
#include <wx/button.h>

#include "files/file_util_ex.h"

void SetButtonLabel(wxButton& button, const std::wstring& text) {
    button.SetLabel(text);
    GtkWidget* widget = button.GetHandle();
    // Deprecated together with stock items, but the only way to switch them off.
    g_object_set(widget, "use-stock", FALSE, nullptr);
    gtk_button_set_label(GTK_BUTTON(widget), file_util_ex::ConvertToUTF8(text).c_str());
}
