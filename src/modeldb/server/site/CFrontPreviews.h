// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "base/CResult.h"
#include "modeldb/bytes/CBlobHash.h"
#include "modeldb/records/store_records.h"

class CModelStore;

/** The previews of groups' first models, remembered until a group changes. Any thread. */
class CFrontPreviews {
  public:
    static constexpr std::size_t kPreviews = 4;

    /** At most kPreviews; one for each model, nothing where the model has none. Errors are the store's. */
    [[nodiscard]] CResult<std::vector<std::optional<CBlobHash>>> Of(CModelStore& store,
                                                                    const CGroupRecord& group);

  private:
    struct CKept {
        std::uint64_t version = 0;
        std::vector<std::optional<CBlobHash>> previews;
    };
    std::mutex m_mutex;
    std::map<std::int64_t, CKept> m_kept;
};
