// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "base/jobs/CJob.h"

/** Runs work on a thread of its own and returns when it has ended. Windows repaint meanwhile; keys and the
 * mouse wait. tick, which may be empty, is called on this thread every hundredth of a second or so and may
 * cancel the work. Rethrows an exception of the work. Without an event loop it only waits. Only the thread of
 * the windows may call it. */
void RunJob(const CJob::CWork& work, const std::function<void(CJobProgress&)>& tick = {});

/** Paints all windows that need it; call it before long work on this thread. */
void RepaintWindows();
