// SPDX-License-Identifier: MIT
#include "base/jobs/thread_priority.h"

#include <sys/resource.h>
#include <unistd.h>

void LowerPriorityOfThisThread() {
    constexpr int kLow = 10;
    (void)::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kLow);  // see the header
}
