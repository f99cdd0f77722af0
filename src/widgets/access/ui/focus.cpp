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

void TellFocusAgain(wxWindow& topLevel) {
    for (const wxWindow* other : wxTopLevelWindows)
        if (other != &topLevel && gtk_window_is_active(GTK_WINDOW(other->GetHandle()))) return;
    GtkWidget* window = topLevel.GetHandle();
    if (!gtk_widget_get_window(window)) return;
    // Only those hear this signal who follow the focus for readers.
    GdkEvent* event = gdk_event_new(GDK_FOCUS_CHANGE);
    event->focus_change.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(window)));
    event->focus_change.in = TRUE;
    g_signal_emit_by_name(window, "event-after", event);
    gdk_event_free(event);
}

void TellValues(wxWindow& slider, bool tells) {
    static constexpr char kFrozen[] = "orbivue-frozen";
    GObject* object = G_OBJECT(gtk_widget_get_accessible(FocusWidgetOf(slider)));
    const bool isFrozen = g_object_get_data(object, kFrozen) != nullptr;
    if (isFrozen != tells) return;
    g_object_set_data(object, kFrozen, tells ? nullptr : object);
    tells ? g_object_thaw_notify(object) : g_object_freeze_notify(object);
}

void KeepFocusOff(wxWindow& window) {
    gtk_widget_set_can_focus(FocusWidgetOf(window), FALSE);
}
