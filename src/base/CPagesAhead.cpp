// SPDX-License-Identifier: MIT
#include "base/CPagesAhead.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <system_error>

void CPagesAhead::Begin(std::byte* block, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
    if (bytes < kLeastBytes) return;
    const auto work = [block, bytes](const std::stop_token& stop) {
        constexpr std::size_t kPage = 4096, kStep = 1u << 20;
        const std::size_t first = (kPage - reinterpret_cast<std::uintptr_t>(block) % kPage) % kPage;
        for (std::size_t at = first; at + kPage <= bytes && !stop.stop_requested(); at += kStep) {
            const std::size_t size = std::min(kStep, (bytes - at) / kPage * kPage);
            if (::madvise(block + at, size, MADV_POPULATE_WRITE) != 0) return;
        }
    };
    try {
        m_thread = std::jthread(work);
    } catch (const std::system_error&) {
        return;  // without a thread more the pages come one by one
    }
#else
    (void)block;
    (void)bytes;
#endif
}
