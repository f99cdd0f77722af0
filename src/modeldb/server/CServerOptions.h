// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "modeldb/database/CStoreAddress.h"
#include "modeldb/protocol/wire_limits.h"

/** What a server of models serves, and how much of it. */
struct CServerOptions {
    CStoreAddress store;
    bool isPrivate = false;       ///< nothing is told without a token that may read
    bool hasOpenUploads = false;  ///< anybody may add models
    std::string baseUrl;          ///< the public address, for pages; may be empty
    std::string cacheFolder;      ///< see CHotFolder
    std::uint64_t cacheBytes = 4ULL << 30;
    std::uint64_t pageBytes = 64ULL << 20;  ///< of lists that are kept in memory
    unsigned workers =
        4;  ///< threads that read the store; half as many more search, as many make pages of models, and two take uploads
    std::size_t waiting = 256;  ///< requests that wait for a worker; further ones are told 503
    std::size_t waitingUploads = 16;
    std::uint64_t uploadBytes = wire_limits::kUploadBytes;  ///< of one upload's body
    double uploadsPerMinute = 120;        ///< of one peer; 0: no limit. Loopback addresses have none
    std::uint64_t groups = 10'000;        ///< of the store; an upload makes no further one
    std::uint64_t groupModels = 100'000;  ///< of one group; an upload adds no further one
    bool drawsPreviews = true;
    std::string workerProgram = "/proc/self/exe";  ///< see CWorkshop
    /** Takes one line of English for what the server's owner should know, without secrets. Any thread. */
    std::function<void(std::string_view line)> complain;
};
