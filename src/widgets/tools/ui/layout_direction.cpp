// SPDX-License-Identifier: MIT
#include "widgets/tools/ui/layout_direction.h"

#include <wx/bitmap.h>
#include <wx/dc.h>
#include <wx/eventfilter.h>
#include <wx/stattext.h>

#ifdef __WXGTK__
#include <gtk/gtk.h>
#endif

#include "base/text/lng.h"

namespace {

#ifdef __WXGTK__
/** Puts labels that are wider than their texts right: wxWidgets mirrors their alignment, and GTK mirrors it back. */
class CLabelAlignment final : public wxEventFilter {
  public:
    CLabelAlignment() { wxEvtHandler::AddFilter(this); }
    ~CLabelAlignment() override { wxEvtHandler::RemoveFilter(this); }
    int FilterEvent(wxEvent& event) override {
        if (event.GetEventType() != wxEVT_CREATE) return Event_Skip;
        const auto* text = dynamic_cast<wxStaticText*>(event.GetEventObject());
        constexpr long kAligned = wxALIGN_RIGHT | wxALIGN_CENTRE_HORIZONTAL;
        if (text == nullptr || text->HasFlag(kAligned) || !GTK_IS_LABEL(text->GetHandle())) return Event_Skip;
        gtk_label_set_xalign(GTK_LABEL(text->GetHandle()), 0);
        gtk_label_set_justify(GTK_LABEL(text->GetHandle()), GTK_JUSTIFY_LEFT);
        return Event_Skip;
    }
};
#endif

}  // namespace

wxLayoutDirection LayoutDirection() {
    return lng::IsRightToLeft() ? wxLayout_RightToLeft : wxLayout_LeftToRight;
}

void SetToolkitDirection() {
#ifdef __WXGTK__
    gtk_widget_set_default_direction(lng::IsRightToLeft() ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR);
    if (lng::IsRightToLeft()) static CLabelAlignment alignment;
#endif
}

int PlaceOfBitmap(const wxDC& dc, const wxBitmap& bitmap, int left) {
    if (dc.GetLayoutDirection() != wxLayout_RightToLeft) return left;
    return left - (bitmap.GetWidth() - static_cast<int>(bitmap.GetLogicalWidth()));
}
