// SPDX-License-Identifier: MIT
#include "widgets/ui/end_signals.h"

#include <glib-unix.h>

#include <csignal>
#include <utility>

namespace {

std::function<void(int)>& End() {
    static std::function<void(int)> end;
    return end;
}

template <int signal>
void Watch() {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
    const auto tell = [](gpointer) -> gboolean {
        End()(signal);
        return G_SOURCE_REMOVE;
    };
    g_unix_signal_add(signal, tell, nullptr);
    // GLib's own handler would hold a second signal back until the event loop has handled the first.
    if (::sigaction(signal, nullptr, &action) != 0) return;
    action.sa_flags |= static_cast<int>(SA_RESETHAND);
    (void)::sigaction(signal, &action, nullptr);
}

}  // namespace

void WatchEndSignals(std::function<void(int signal)> end) {
    End() = std::move(end);
    Watch<SIGTERM>();
    Watch<SIGINT>();
    Watch<SIGHUP>();
}
