// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <list>
#include <utility>

#include "frame/preview/CPreviewRequest.h"
#include "frame/preview/CPreviewResult.h"

/** The last previews, so that going back to a file shows it at once. */
class CPreviewCache {
  public:
    static constexpr std::size_t kCapacity = 12;

    /** Null when it is not here; valid until the next Add. */
    [[nodiscard]] const CPreviewResult* Find(const CPreviewRequest& request);
    /** The one that was not looked at for longest makes room. */
    void Add(const CPreviewRequest& request, CPreviewResult result);

  private:
    std::list<std::pair<CPreviewRequest, CPreviewResult>> m_entries;  // the one last looked at first
};
