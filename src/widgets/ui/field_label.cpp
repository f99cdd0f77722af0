// SPDX-License-Identifier: MIT
#include "widgets/ui/field_label.h"

#include <gtk/gtk.h>
#include <wx/fontutil.h>
#include <wx/stattext.h>

#include <string>
#include <string_view>

#include "widgets/ui/accessible_name.h"

void SetLabelFor(wxStaticText& label, wxWindow& field) {
    wxString name = label.GetLabelText();
    if (name.EndsWith(":")) name.RemoveLast();
    field.SetName(name);
    label.MoveBeforeInTabOrder(&field);
    gtk_label_set_mnemonic_widget(GTK_LABEL(label.GetHandle()), FocusWidgetOf(field));
}

void WrapText(wxStaticText& label, int width) {
    const std::string text = label.GetLabelText().utf8_string();
    PangoLayout* layout = gtk_widget_create_pango_layout(label.GetHandle(), text.c_str());
    // The widget's style may not know of the font yet.
    const wxFont font = label.GetFont();
    if (const wxNativeFontInfo* info = font.GetNativeFontInfo())
        pango_layout_set_font_description(layout, info->description);
    pango_layout_set_width(layout, width * PANGO_SCALE);
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    std::string lines;
    for (const GSList* line = pango_layout_get_lines_readonly(layout); line; line = line->next) {
        const auto* at = static_cast<const PangoLayoutLine*>(line->data);
        std::string_view part(text.c_str() + at->start_index, static_cast<std::size_t>(at->length));
        while (part.ends_with(' ')) part.remove_suffix(1);
        lines += (lines.empty() ? "" : "\n") + std::string(part);
    }
    g_object_unref(layout);
    label.SetLabelText(wxString::FromUTF8(lines.c_str()));
}
