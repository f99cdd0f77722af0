// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

/** Calls body(0) ... body(count - 1), each once and in no fixed order, and returns when all calls are done.
 * Runs on up to `threads` threads (0: one for each core), of which the calling thread is one, and on fewer
 * where the system has no more. An exception from a body skips the calls that have not begun and is
 * rethrown here. */
void ParallelFor(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& body);
