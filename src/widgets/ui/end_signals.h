// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/** Calls end from the event loop when the process receives SIGTERM, SIGINT or SIGHUP. A signal that was
 * ignored when the process started stays ignored. A second signal of the same kind ends the process at once,
 * even if the event loop has not yet handled the first. */
void WatchEndSignals(std::function<void(int signal)> end);
