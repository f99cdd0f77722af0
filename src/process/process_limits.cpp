// SPDX-License-Identifier: MIT
#include "process/process_limits.h"

#include <sys/resource.h>

#include <algorithm>
#include <csignal>

namespace {

bool Limit(__rlimit_resource kind, std::uint64_t most) {
    rlimit limit{};
    if (::getrlimit(kind, &limit) != 0) return false;
    limit.rlim_max = std::min<rlim_t>(limit.rlim_max, most);
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_cur, limit.rlim_max);
    return ::setrlimit(kind, &limit) == 0;
}

}  // namespace

bool SetProcessLimits(const CProcessLimits& limits) {
    bool all = Limit(RLIMIT_CORE, 0) && std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR;
    if (limits.memoryBytes != 0) all = Limit(RLIMIT_DATA, limits.memoryBytes) && all;
    if (limits.processorSeconds != 0) all = Limit(RLIMIT_CPU, limits.processorSeconds) && all;
    if (limits.fileBytes != 0) all = Limit(RLIMIT_FSIZE, limits.fileBytes) && all;
    if (limits.openFiles != 0) all = Limit(RLIMIT_NOFILE, limits.openFiles) && all;
    return all;
}

bool LimitProcessorTimeFromNow(std::uint64_t seconds) {
    rusage used{};
    rlimit limit{};
    if (::getrusage(RUSAGE_SELF, &used) != 0 || ::getrlimit(RLIMIT_CPU, &limit) != 0) return false;
    const auto soFar = static_cast<std::uint64_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec);
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, soFar + seconds + 1);
    return ::setrlimit(RLIMIT_CPU, &limit) == 0;
}
