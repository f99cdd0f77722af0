// SPDX-License-Identifier: MIT
#include "widgets/access/ui/toolkit_access.h"

#include <gtk/gtk-a11y.h>
#include <gtk/gtk.h>
#include <wx/app.h>

namespace {

using CDoAction = gboolean (*)(AtkAction*, gint);

CDoAction s_press = nullptr;  ///< what GTK does for a button's action

/** Some themes draw them faintly. Halfway between its two colours a frame stands out from light and from dark ground. */
void ShowFocusFrames() {
    GtkCssProvider* style = gtk_css_provider_new();
    gtk_css_provider_load_from_data(
        style,
        "@define-color orbivue_focus mix(@theme_selected_bg_color, @theme_fg_color, 0.5);"
        "* { outline-color: currentColor; }"
        "entry:focus, spinbutton:focus { border-color: @orbivue_focus;"
        "  box-shadow: inset 0 0 0 1px @orbivue_focus; }",
        -1, nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(style),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(style);
}

/** Later: what a press leads to may serve events until a dialog is closed, and the reader would wait for it. */
gboolean PressLater(AtkAction* action, gint index) {
    GtkWidget* button = gtk_accessible_get_widget(GTK_ACCESSIBLE(action));
    if (index != 0 || !button || !gtk_widget_is_sensitive(button)) return FALSE;
    g_object_ref(action);
    wxTheApp->CallAfter([action] {
        s_press(action, 0);
        g_object_unref(action);
    });
    return TRUE;
}

/** Of all buttons, those of the desktop's own dialogs included; the kinds of buttons take it over. */
void PressButtonsLater() {
    auto* kind = g_type_class_ref(GTK_TYPE_BUTTON_ACCESSIBLE);  // never given back
    auto* actions = static_cast<AtkActionIface*>(g_type_interface_peek(kind, ATK_TYPE_ACTION));
    if (!actions || s_press) return;
    s_press = actions->do_action;
    actions->do_action = PressLater;
}

}  // namespace

void MakeToolkitAccessible() {
    ShowFocusFrames();
    PressButtonsLater();
}
