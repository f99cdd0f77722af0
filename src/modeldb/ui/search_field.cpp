// SPDX-License-Identifier: MIT
#include "modeldb/ui/search_field.h"

#include <gtk/gtk.h>
#include <wx/textctrl.h>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "modeldb/ui/text_keys.h"
#include "widgets/ui/accessible_name.h"

namespace {

void OnIcon(GtkEntry* entry, GtkEntryIconPosition where, GdkEvent*, gpointer) {
    if (where == GTK_ENTRY_ICON_SECONDARY) gtk_entry_set_text(entry, "");
}

void ShowClearIcon(GtkEntry* entry, bool isShown) {
    gtk_entry_set_icon_from_icon_name(entry, GTK_ENTRY_ICON_SECONDARY,
                                      isShown ? "edit-clear-symbolic" : nullptr);
    if (isShown)
        gtk_entry_set_icon_tooltip_text(entry, GTK_ENTRY_ICON_SECONDARY,
                                        file_util_ex::ConvertToUTF8(lng::Text("Clear the search")).c_str());
}

}  // namespace

wxTextCtrl* MakeSearchField(wxWindow* parent) {
    auto* field =
        new wxTextCtrl(parent, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize, wxTE_PROCESS_ENTER);
    GtkEntry* entry = GTK_ENTRY(field->GetHandle());
    field->SetHint(lng::Text("Search for models"));
    SetAccessibleName(*field, lng::Text("Search for models"));
    gtk_entry_set_icon_from_icon_name(entry, GTK_ENTRY_ICON_PRIMARY, "edit-find-symbolic");
    gtk_entry_set_icon_activatable(entry, GTK_ENTRY_ICON_PRIMARY, FALSE);
    gtk_entry_set_width_chars(entry, 1);  // as narrow as the pane is made
    g_signal_connect(entry, "icon-release", G_CALLBACK(OnIcon), nullptr);
    // The toolkit's own measure leaves large texts no room.
    int least = 0, natural = 0;
    gtk_widget_get_preferred_height(field->GetHandle(), &least, &natural);
    field->SetMinSize(wxSize(-1, natural));
    GiveTextKeys(*field);
    field->Bind(wxEVT_TEXT, [field, entry](wxCommandEvent& event) {
        ShowClearIcon(entry, !field->IsEmpty());
        event.Skip();
    });
    return field;
}
