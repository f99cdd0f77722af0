// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/** Calls end, in the event loop, with the first signal that asks the process to end: SIGTERM, SIGINT or
 * SIGHUP, but none that whoever started it has it ignore. A second one of its kind ends it at once, also when
 * the event loop has not come to the first yet. */
void WatchEndSignals(std::function<void(int signal)> end);
