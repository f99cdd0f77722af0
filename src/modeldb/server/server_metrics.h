// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "modeldb/server/cache/CHotFolder.h"
#include "modeldb/server/http/CHttpCounters.h"
#include "modeldb/server/work/CPreviewQueue.h"

/** What a server tells of itself. */
struct CServerCounts {
    CHttpCounters http;
    CHotCounts hot;
    CPreviewCounts previews;
    std::uint64_t pageBytes = 0;
    std::uint64_t waiting = 0, waitingUploads = 0;  ///< now
    std::uint64_t uploadsAdded = 0, uploadsSame = 0, uploadsRefused = 0, uploadsFailed = 0;
    std::uint64_t storeFailures = 0;
    std::uint64_t memoryBytes = 0;  ///< of the process now
};

/** The counts in Prometheus' text form, version 0.0.4. */
[[nodiscard]] std::string MetricsText(const CServerCounts& counts);
