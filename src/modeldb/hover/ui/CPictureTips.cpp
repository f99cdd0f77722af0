// SPDX-License-Identifier: MIT
#include "modeldb/hover/ui/CPictureTips.h"

#include <gtk/gtk.h>
#include <wx/window.h>

#include <memory>
#include <utility>

#include "base/text/utf8_text.h"
#include "modeldb/hover/ui/CPreviewFetcher.h"

namespace {

struct CUnref {
    void operator()(GdkPixbuf* picture) const { g_object_unref(picture); }
};

/** A copy of the picture, as the toolkit draws it. */
std::unique_ptr<GdkPixbuf, CUnref> PixbufOf(const CImage& image) {
    constexpr int kBits = 8, kBytes = 4;
    GBytes* bytes = g_bytes_new(image.rgba.data(), image.rgba.size());
    std::unique_ptr<GdkPixbuf, CUnref> picture(gdk_pixbuf_new_from_bytes(
        bytes, GDK_COLORSPACE_RGB, TRUE, kBits, image.width, image.height, image.width * kBytes));
    g_bytes_unref(bytes);
    return picture;
}

}  // namespace

CPictureTips::CPictureTips(wxWindow& window, CPreviewFetcher& pictures, CFind find)
    : m_widget(window.m_wxwindow), m_pictures(pictures), m_find(std::move(find)) {
    gtk_widget_set_has_tooltip(m_widget, TRUE);
    g_signal_connect(m_widget, "query-tooltip", G_CALLBACK(&CPictureTips::OnQuery), this);
}

CPictureTips::~CPictureTips() {
    g_signal_handlers_disconnect_by_data(m_widget, this);
    gtk_widget_set_has_tooltip(m_widget, FALSE);
}

void CPictureTips::Renew() {
    gtk_widget_trigger_tooltip_query(m_widget);
}

gboolean CPictureTips::OnQuery(GtkWidget*, gint x, gint y, gboolean byKeyboard, GtkTooltip* tip, void* self) {
    const auto& tips = *static_cast<CPictureTips*>(self);
    const std::optional<CModel> model = tips.m_find(byKeyboard ? std::nullopt : std::optional(wxPoint(x, y)));
    if (!model) return FALSE;
    gtk_tooltip_set_text(tip, file_util_ex::ConvertToUTF8(model->text).c_str());
    const CImage* picture = tips.m_pictures.Find(model->id);
    gtk_tooltip_set_icon(tip, picture && !picture->IsEmpty() ? PixbufOf(*picture).get() : nullptr);
    const GdkRectangle area{model->area.x, model->area.y, model->area.width, model->area.height};
    gtk_tooltip_set_tip_area(tip, &area);
    return TRUE;
}
