// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "base/jobs/CJob.h"

/** Runs work on a thread of its own and returns when it has ended. Windows repaint meanwhile; keys and the
 * mouse wait. tick, which may be empty, is called on this thread every few hundredths of a second, and may
 * cancel. An exception of the work is thrown here. Without an event loop it only waits. Thread of the windows
 * only. */
void RunJob(const CJob::CWork& work, const std::function<void(CJobProgress&)>& tick = {});

/** Lets windows paint what is due, before long work on this thread. */
void RepaintWindows();
