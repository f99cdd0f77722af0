// SPDX-License-Identifier: MIT
#include "windows/text_faults.h"

#include <gtk/gtk.h>
#include <wx/dcclient.h>
#include <wx/listctrl.h>
#include <wx/statusbr.h>

#include <algorithm>

namespace {

using CFaults = std::vector<std::string>;

std::string Quoted(const char* what, const std::string& text) {
    return std::string(what) + ": \"" + text + "\"";
}

std::string Sizes(int neededX, int neededY, int hasX, int hasY) {
    const auto size = [](int x, int y) { return std::to_string(x) + "x" + std::to_string(y); };
    return " (needs " + size(neededX, neededY) + ", has " + size(hasX, hasY) + ")";
}

void CheckLetters(PangoLayout* layout, CFaults& faults) {
    if (pango_layout_get_unknown_glyphs_count(layout) > 0)
        faults.push_back(Quoted("no font for", pango_layout_get_text(layout)));
}

/** What of a widget its surroundings show. What can be scrolled counts as seen. */
GdkRectangle SeenPart(GtkWidget* widget) {
    GdkRectangle seen{0, 0, gtk_widget_get_allocated_width(widget), gtk_widget_get_allocated_height(widget)};
    GtkWidget* parent = gtk_widget_get_parent(widget);
    const auto scrolls = [](GtkWidget* one) {
        GtkWidget* around = gtk_widget_get_parent(one);
        return around && GTK_IS_SCROLLED_WINDOW(around);
    };
    for (; parent && !scrolls(parent); parent = gtk_widget_get_parent(parent)) {
        GdkRectangle bounds{0, 0, gtk_widget_get_allocated_width(parent),
                            gtk_widget_get_allocated_height(parent)};
        if (!gtk_widget_translate_coordinates(parent, widget, 0, 0, &bounds.x, &bounds.y)) break;
        if (!gdk_rectangle_intersect(&seen, &bounds, &seen)) return {};
    }
    return seen;
}

void CheckLabel(GtkLabel* label, CFaults& faults) {
    PangoLayout* layout = gtk_label_get_layout(label);
    const std::string text = pango_layout_get_text(layout);
    if (text.empty()) return;
    CheckLetters(layout, faults);
    // Letters of another font than the theme's may leave more room around them than there is, and marks of Arabic reach
    // beyond their line; neither is cut.
    PangoRectangle ink, whole;
    pango_layout_get_pixel_extents(layout, &ink, &whole);
    const int width = whole.width, height = std::min(ink.height, whole.height);
    const GdkRectangle seen = SeenPart(GTK_WIDGET(label));
    if (pango_layout_is_ellipsized(layout))
        faults.push_back(Quoted("ends with dots", text));
    else if (width > seen.width + 1 || height > seen.height)
        faults.push_back(Quoted("cut", text) + Sizes(width, height, seen.width, seen.height));
}

void CheckEntry(GtkEntry* entry, CFaults& faults) {
    GtkRequisition least;
    gtk_widget_get_preferred_size(GTK_WIDGET(entry), &least, nullptr);
    const int has = gtk_widget_get_allocated_height(GTK_WIDGET(entry));
    if (has < least.height)
        faults.push_back(Quoted("field too low", gtk_entry_get_text(entry)) + Sizes(0, least.height, 0, has));
    const char* hint = gtk_entry_get_placeholder_text(entry);
    if (!hint || !*hint) return;
    PangoLayout* layout = gtk_widget_create_pango_layout(GTK_WIDGET(entry), hint);
    CheckLetters(layout, faults);
    int width = 0;
    pango_layout_get_pixel_size(layout, &width, nullptr);
    GdkRectangle area;
    gtk_entry_get_text_area(entry, &area);
    if (width > area.width) faults.push_back(Quoted("hint cut", hint));
    g_object_unref(layout);
}

/** The first rows of a native list. */
void CheckRows(GtkTreeView* list, CFaults& faults) {
    GtkTreeModel* model = gtk_tree_view_get_model(list);
    GtkTreeIter row;
    if (!model || !gtk_tree_model_get_iter_first(model, &row)) return;
    constexpr int kMost = 100;
    int count = 0;
    do {
        for (int column = 0; column < gtk_tree_model_get_n_columns(model); ++column) {
            if (gtk_tree_model_get_column_type(model, column) != G_TYPE_STRING) continue;
            gchar* text = nullptr;
            gtk_tree_model_get(model, &row, column, &text, -1);
            PangoLayout* layout = gtk_widget_create_pango_layout(GTK_WIDGET(list), text);
            CheckLetters(layout, faults);
            g_object_unref(layout);
            g_free(text);
        }
    } while (++count < kMost && gtk_tree_model_iter_next(model, &row));
}

void Walk(GtkWidget* widget, CFaults& faults) {
    if (!gtk_widget_get_mapped(widget)) return;
    if (GTK_IS_FILE_CHOOSER_WIDGET(widget)) {  // of which only what we put into it is ours
        auto* chooser = GTK_FILE_CHOOSER(widget);
        for (GtkWidget* own :
             {gtk_file_chooser_get_preview_widget(chooser), gtk_file_chooser_get_extra_widget(chooser)})
            if (own) Walk(own, faults);
        return;
    }
    if (GTK_IS_LABEL(widget)) {
        CheckLabel(GTK_LABEL(widget), faults);
    } else if (GTK_IS_ENTRY(widget)) {
        CheckEntry(GTK_ENTRY(widget), faults);
    } else if (GTK_IS_TREE_VIEW(widget)) {
        CheckRows(GTK_TREE_VIEW(widget), faults);
    }
    if (!GTK_IS_CONTAINER(widget)) return;
    gtk_container_forall(
        GTK_CONTAINER(widget),
        [](GtkWidget* child, gpointer faultsSoFar) { Walk(child, *static_cast<CFaults*>(faultsSoFar)); },
        &faults);
}

void CheckStatusBar(wxStatusBar& bar, CFaults& faults) {
    for (int field = 0; field < bar.GetFieldsCount(); ++field) {
        wxRect place;
        const wxString text = bar.GetStatusText(field);
        if (text.empty() || !bar.GetFieldRect(field, place)) continue;
        if (bar.GetTextExtent(text).x > place.width)
            faults.push_back(Quoted("status cut", text.utf8_string()));
    }
}

void CheckHeadings(wxListCtrl& list, CFaults& faults) {
    if (list.HasFlag(wxLC_NO_HEADER)) return;
    for (int column = 0; column < list.GetColumnCount(); ++column) {
        wxListItem item;
        item.SetMask(wxLIST_MASK_TEXT);
        list.GetColumn(column, item);
        if (list.GetTextExtent(item.GetText()).x > list.GetColumnWidth(column))
            faults.push_back(Quoted("heading cut", item.GetText().utf8_string()));
    }
}

void WalkDrawn(wxWindow& window, CFaults& faults) {
    if (!window.IsShown()) return;
    if (auto* bar = dynamic_cast<wxStatusBar*>(&window)) CheckStatusBar(*bar, faults);
    if (auto* list = dynamic_cast<wxListCtrl*>(&window)) CheckHeadings(*list, faults);
    for (wxWindow* child : window.GetChildren())
        if (!child->IsTopLevel()) WalkDrawn(*child, faults);
}

}  // namespace

std::vector<std::string> TextFaults(GtkWidget* window) {
    CFaults faults;
    int width = 0, height = 0;
    gtk_window_get_size(GTK_WINDOW(window), &width, &height);
    GdkWindow* screen = gdk_get_default_root_window();
    const int roomX = gdk_window_get_width(screen), roomY = gdk_window_get_height(screen);
    // GTK chooses the size of its own dialog, which can be made smaller.
    if ((width > roomX || height > roomY) && !GTK_IS_FILE_CHOOSER(window))
        faults.push_back("larger than the screen" + Sizes(width, height, roomX, roomY));
    Walk(window, faults);
    return faults;
}

std::vector<std::string> DrawnTextFaults(wxWindow& window) {
    CFaults faults;
    WalkDrawn(window, faults);
    return faults;
}
