// SPDX-License-Identifier: MIT
#include "widgets/ui/field_label.h"

#include <gtk/gtk.h>
#include <wx/stattext.h>

#include "widgets/ui/accessible_name.h"

void SetLabelFor(wxStaticText& label, wxWindow& field) {
    wxString name = label.GetLabelText();
    if (name.EndsWith(":")) name.RemoveLast();
    field.SetName(name);
    label.MoveBeforeInTabOrder(&field);
    gtk_label_set_mnemonic_widget(GTK_LABEL(label.GetHandle()), FocusWidgetOf(field));
}
