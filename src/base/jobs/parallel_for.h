// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

/** Calls body(0) ... body(count - 1), each once, on up to `threads` threads (0: one for each core), the
 * calling one among them, and returns when all are done; on fewer where the system gives no more. Order is
 * not fixed. An exception of a body ends the rest early and is thrown again here. */
void ParallelFor(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& body);
