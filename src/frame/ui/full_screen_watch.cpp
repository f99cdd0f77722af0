// SPDX-License-Identifier: MIT
#include "frame/ui/full_screen_watch.h"

#include <gtk/gtk.h>
#include <wx/toplevel.h>

#include <utility>

namespace {

using CChanged = std::function<void()>;

gboolean OnState(GtkWidget*, GdkEventWindowState* event, gpointer changed) {
    if (event->changed_mask & GDK_WINDOW_STATE_FULLSCREEN) (*static_cast<CChanged*>(changed))();
    return FALSE;
}

}  // namespace

void WatchFullScreen(wxTopLevelWindow& window, std::function<void()> changed) {
    g_signal_connect_data(
        window.GetHandle(), "window-state-event", G_CALLBACK(OnState), new CChanged(std::move(changed)),
        [](gpointer owned, GClosure*) { delete static_cast<CChanged*>(owned); }, G_CONNECT_AFTER);
}
