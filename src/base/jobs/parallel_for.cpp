// SPDX-License-Identifier: MIT
#include "base/jobs/parallel_for.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

void ParallelFor(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& body) {
    const std::size_t cores = std::max(1u, threads ? threads : std::thread::hardware_concurrency());
    std::atomic<std::size_t> next{0};
    std::exception_ptr failure;
    std::mutex failureLock;
    const auto work = [&] {
        for (std::size_t i = next++; i < count; i = next++) {
            try {
                body(i);
            } catch (...) {
                const std::lock_guard guard(failureLock);
                if (!failure) failure = std::current_exception();
                next = count;
            }
        }
    };
    {
        std::vector<std::jthread> helpers;
        try {
            for (std::size_t i = 1; i < std::min(cores, count); ++i) helpers.emplace_back(work);
        } catch (const std::system_error&) {
            // The system has no further thread: the threads that run do all the work.
        }
        work();
    }
    if (failure) std::rethrow_exception(failure);
}
