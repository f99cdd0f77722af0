// SPDX-License-Identifier: MIT
#include "windows/screen_picture.h"

#include <gtk/gtk.h>

namespace {

bool IsPopup(GtkWidget* window) {
    return GTK_IS_WINDOW(window) && gtk_window_get_window_type(GTK_WINDOW(window)) == GTK_WINDOW_POPUP &&
           gtk_widget_get_mapped(window);
}

/** The place on the screen of a window with its frame, and of all menus. */
GdkRectangle PlaceOf(GtkWidget* window) {
    GdkRectangle place;
    gdk_window_get_frame_extents(gtk_widget_get_window(window), &place);
    GList* all = gtk_window_list_toplevels();
    for (GList* one = all; one; one = one->next) {
        auto* other = static_cast<GtkWidget*>(one->data);
        if (!IsPopup(other)) continue;
        GdkRectangle extent;
        gdk_window_get_frame_extents(gtk_widget_get_window(other), &extent);
        gdk_rectangle_union(&place, &extent, &place);
    }
    g_list_free(all);
    return place;
}

}  // namespace

bool SavePicture(GtkWidget* window, const std::string& path) {
    GdkRectangle place = PlaceOf(window);
    GdkWindow* screen = gdk_get_default_root_window();
    const GdkRectangle whole{0, 0, gdk_window_get_width(screen), gdk_window_get_height(screen)};
    if (!gdk_rectangle_intersect(&place, &whole, &place)) return false;
    GdkPixbuf* picture = gdk_pixbuf_get_from_window(screen, place.x, place.y, place.width, place.height);
    if (!picture) return false;
    const bool isSaved = gdk_pixbuf_save(picture, path.c_str(), "png", nullptr, nullptr);
    g_object_unref(picture);
    return isSaved;
}
