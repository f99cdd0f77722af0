// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <list>
#include <utility>

#include "frame/preview/CPreviewRequest.h"
#include "frame/preview/CPreviewResult.h"

/** Keeps the last previews, so that selecting a file again shows its preview at once. */
class CPreviewCache {
  public:
    static constexpr std::size_t kCapacity = 12;

    /** Null when the cache does not have it; valid until the next Add. */
    [[nodiscard]] const CPreviewResult* Find(const CPreviewRequest& request);
    /** Adds a preview; a full cache drops the one that has not been looked up for longest. */
    void Add(const CPreviewRequest& request, CPreviewResult result);

  private:
    std::list<std::pair<CPreviewRequest, CPreviewResult>> m_entries;  // the one last looked at first
};
