// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/** Runs work on a thread of its own and returns when it has ended. Windows repaint meanwhile; keys and the
 * mouse wait. tick, which may be empty, is called on this thread every few hundredths of a second. An
 * exception of the work is thrown here. Without an event loop it only waits. Thread of the windows only. */
void RunBesideWindows(const std::function<void()>& work, const std::function<void()>& tick);

/** Lets windows paint what is due, before long work on this thread. */
void RepaintWindows();
