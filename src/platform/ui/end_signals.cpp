// SPDX-License-Identifier: MIT
#include "platform/ui/end_signals.h"

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
    struct sigaction before {};
    if (::sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN) return;
    const auto tell = [](gpointer) -> gboolean {
        End()(signal);
        return G_SOURCE_REMOVE;
    };
    g_unix_signal_add(signal, tell, nullptr);
}

}  // namespace

void WatchEndSignals(std::function<void(int signal)> end) {
    End() = std::move(end);
    Watch<SIGTERM>();
    Watch<SIGINT>();
    Watch<SIGHUP>();
}
