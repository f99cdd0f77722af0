// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/** Calls end, in the event loop, with the first signal that asks the process to end: SIGTERM, SIGINT or
 * SIGHUP, but none that whoever started it has it ignore. A second one of its kind ends it at once. */
void WatchEndSignals(std::function<void(int signal)> end);
