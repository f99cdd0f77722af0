// SPDX-License-Identifier: MIT
#include "view/ui/tool_cursors.h"

#include <gtk/gtk.h>
#include <wx/cursor.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/window.h>

#include <cmath>
#include <memory>
#include <string>

#include "files/std_file_paths.h"

namespace {

constexpr int kSide = 32;  ///< of the pictures, in device-independent pixels
constexpr int kTip = 3;    ///< where their tip lies, to the right and down

struct CLook {
    const wchar_t* file = nullptr;
    wxStockCursor instead = wxCURSOR_ARROW;
};

CLook LookOf(EToolCursor cursor) {
    switch (cursor) {
        case EToolCursor::Color:
            return {L"IDC_CR_COLOR.ico", wxCURSOR_PAINT_BRUSH};
        case EToolCursor::Shininess:
            return {L"IDC_CR_SHININESS.ico", wxCURSOR_SPRAYCAN};
        case EToolCursor::Transparency:
            return {L"IDC_CR_TRANSPARENCY.ico", wxCURSOR_MAGNIFIER};
        case EToolCursor::ReplaceNode:
            return {L"IDC_CR_Replace.ico", wxCURSOR_HAND};
        case EToolCursor::Filter:
            return {L"IDC_CR_Filter.ico", wxCURSOR_QUESTION_ARROW};
        case EToolCursor::Standard:
            break;
    }
    return {};
}

/** The picture of an icon file that has this many pixels; not OK where it has none. */
wxImage PictureOf(const wchar_t* file, int sidePx) {
    const wxLogNull quiet;
    const wxString path = std_file_paths::GetImgPath(file);
    for (int i = 0; i < wxImage::GetImageCount(path, wxBITMAP_TYPE_ICO); ++i) {
        wxImage image;
        if (image.LoadFile(path, wxBITMAP_TYPE_ICO, i) && image.GetWidth() == sidePx) return image;
    }
    return {};
}

/** The toolkit's pointers have one pixel for each device-independent one and are blown up on denser displays: there this
 * one takes their place. */
void SetDenseCursor(wxWindow& window, const wxImage& image, int scale) {
    GdkWindow* area = window.GTKGetDrawingWindow();
    if (!area || !image.IsOk()) return;
    const int side = image.GetWidth();
    const std::unique_ptr<GdkPixbuf, decltype(&g_object_unref)> pixels(
        gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, side, side), &g_object_unref);
    guchar* row = gdk_pixbuf_get_pixels(pixels.get());
    for (int y = 0; y < side; ++y, row += gdk_pixbuf_get_rowstride(pixels.get())) {
        for (int x = 0; x < side; ++x) {
            row[x * 4] = image.GetRed(x, y);
            row[x * 4 + 1] = image.GetGreen(x, y);
            row[x * 4 + 2] = image.GetBlue(x, y);
            row[x * 4 + 3] = image.HasAlpha() ? image.GetAlpha(x, y) : 255;
        }
    }
    cairo_surface_t* surface = gdk_cairo_surface_create_from_pixbuf(pixels.get(), scale, area);
    GdkCursor* cursor = gdk_cursor_new_from_surface(gdk_window_get_display(area), surface, kTip, kTip);
    gdk_window_set_cursor(area, cursor);
    g_object_unref(cursor);
    cairo_surface_destroy(surface);
}

}  // namespace

void ShowToolCursor(wxWindow& window, EToolCursor cursor) {
    const CLook look = LookOf(cursor);
    wxImage image = look.file ? PictureOf(look.file, kSide) : wxImage();
    if (!image.IsOk()) {
        window.SetCursor(wxCursor(look.instead));
        return;
    }
    image.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_X, kTip);
    image.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_Y, kTip);
    window.SetCursor(wxCursor(image));
    const int scale = static_cast<int>(std::lround(window.GetContentScaleFactor()));
    if (scale == 2) SetDenseCursor(window, PictureOf(look.file, 2 * kSide), scale);
}
