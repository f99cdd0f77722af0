// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "base/CResult.h"
#include "modeldb/client/CProgressUnits.h"
#include "modeldb/client/CServerCalls.h"
#include "modeldb/client/cache/CModelCache.h"

/** Gets the bytes of one blob from a server, or from the cache. They come as the server keeps them, go on where an earlier
 * transfer ended, and are checked by their hash. */
class CBlobDownload {
  public:
    CBlobDownload(CServerCalls& calls, CModelCache& cache, const CStoredBlob& blob, CProgressUnits& units)
        : m_calls(calls), m_cache(cache), m_blob(blob), m_units(units) {}

    /** target has the blob's size. BadFormat: what the server sends is not what its hash says, twice. */
    [[nodiscard]] CStatus Run(std::span<std::byte> target);

  private:
    [[nodiscard]] CStatus Fetch(std::span<std::byte> target);
    [[nodiscard]] CStatus FetchRest(CCachePart& part);

    CServerCalls& m_calls;
    CModelCache& m_cache;
    const CStoredBlob& m_blob;
    CProgressUnits& m_units;
};
