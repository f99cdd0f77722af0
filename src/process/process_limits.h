// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** What a process may take; 0 leaves a limit as it is. */
struct CProcessLimits {
    std::uint64_t memoryBytes = 0;  ///< its own memory (heap, stacks), without libraries and files
    std::uint64_t processorSeconds = 0;
    std::uint64_t fileBytes = 0;  ///< of each file that it writes
    std::uint64_t openFiles = 0;
};

/** Sets the limits for this process, for good; it leaves no core dump then. Writing more than fileBytes is an error
 * (EFBIG) afterwards, no signal; the process is killed when its processor time is used up. False when the system
 * refuses a limit. */
[[nodiscard]] bool SetProcessLimits(const CProcessLimits& limits);

/** Gives this process so many seconds of the processor from now on, instead of what an earlier call gave; it is killed
 * (SIGXCPU) when they are used up. False when the system refuses. */
[[nodiscard]] bool LimitProcessorTimeFromNow(std::uint64_t seconds);
