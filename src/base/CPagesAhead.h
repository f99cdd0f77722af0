// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <thread>

/** Has a thread of its own ask the system for the memory of a large block that another one is about to fill from its
 * beginning: to get each page when it is first written takes longer than to read a file into it. Where the system cannot, it
 * does nothing. */
class CPagesAhead {
  public:
    /** Blocks that are smaller, and vectors that may still move, gain nothing. The block may be freed while this lives, but
     * what then lies there is given memory, too. */
    static constexpr std::size_t kLeastBytes = 8u << 20;

    CPagesAhead() = default;
    CPagesAhead(const CPagesAhead&) = delete;
    CPagesAhead& operator=(const CPagesAhead&) = delete;

    /** Call it once. The contents of the block stay. */
    void Begin(std::byte* block, std::size_t bytes);

  private:
    std::jthread m_thread;
};
