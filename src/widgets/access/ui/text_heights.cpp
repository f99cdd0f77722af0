// SPDX-License-Identifier: MIT
#include "widgets/access/ui/text_heights.h"

#include <gtk/gtk.h>
#include <wx/sizer.h>
#include <wx/toplevel.h>

#include <algorithm>

namespace {

bool RaiseFields(wxWindow& window) {
    bool isRaised = false;
    for (wxWindow* child : window.GetChildren()) isRaised = RaiseFields(*child) || isRaised;
    GtkWidget* widget = window.GetHandle();
    if (!GTK_IS_ENTRY(widget)) return isRaised;
    int least = 0, natural = 0;
    gtk_widget_get_preferred_height(widget, &least, &natural);
    if (natural <= std::max(window.GetMinSize().y, window.GetBestSize().y)) return isRaised;
    window.SetMinSize({window.GetMinSize().x, natural});
    return true;
}

}  // namespace

void FitTextHeights(wxWindow& window) {
    if (!RaiseFields(window) || !window.GetSizer()) return;
    wxSize size = window.GetSize();
    size.IncTo(window.GetSizer()->ComputeFittingWindowSize(&window));
    window.SetSize(size);
    window.Layout();
}
