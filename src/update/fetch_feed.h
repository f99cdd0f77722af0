// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <string>

#include "base/CResult.h"

struct CFeedRequest {
    std::string address;
    std::string agent;  ///< what the server is told of who asks
    std::chrono::milliseconds deadline{20'000};
    std::string
        certificates;  ///< a file of those that are trusted instead of the system's; empty: the system's
};

/** The bytes of a list of versions, at most 1 MiB. Only https is spoken, after at most three redirects too, and certificates
 * are always verified. Returns within a tenth of a second when cancelled becomes true. Any thread.
 *
 * BadArgument: the address, or one that it leads to, is not https; nothing was asked of that. Busy: nobody answers, or too late.
 * Unreadable: the certificate is not trusted. NotFound: the server has no such list. TooLarge. Unsupported: it redirects without
 * end, or there is no way to ask. */
[[nodiscard]] CResult<std::string> FetchFeed(const CFeedRequest& request, const std::atomic<bool>& cancelled);
