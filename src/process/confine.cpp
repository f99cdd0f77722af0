// SPDX-License-Identifier: MIT
#include "process/confine.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "process/call_filter.h"

CProcessLimits LimitsForDrawing() {
    constexpr std::uint64_t kMostMemory = 2ULL << 30, kLeastMemory = 1ULL << 30;
    const auto pages = static_cast<std::uint64_t>(std::max(::sysconf(_SC_PHYS_PAGES), 0L));
    const auto pageBytes = static_cast<std::uint64_t>(std::max(::sysconf(_SC_PAGESIZE), 0L));
    CProcessLimits limits;
    limits.memoryBytes = std::clamp(pages * pageBytes / 2, kLeastMemory, kMostMemory);
    limits.processorSeconds = 60;
    limits.fileBytes = 64 << 20;
    limits.openFiles = 256;
    return limits;
}

CConfined ConfineProcess(const CConfinement& confinement) {
    (void)::setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
    (void)::setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);  // it could not be written
    CConfined done;
    done.limits = SetProcessLimits(confinement.limits);
    done.files = RestrictFiles(confinement.files);
    done.systemCalls = FilterSystemCalls();
    return done;
}
