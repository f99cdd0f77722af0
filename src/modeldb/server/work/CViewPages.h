// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "base/CResult.h"
#include "modeldb/server/work/CWorkshop.h"

class CModelStore;
struct CModelRecord;

/** The pages in which models turn, made when they are first asked for and kept, bounded, in files without names: nothing
 * is left of them when the process ends, however it ends. Any thread. */
class CViewPages {
  public:
    struct COptions {
        std::uint64_t bytes = 1ULL << 30;  ///< of all pages that are kept
        std::size_t pages = 200;           ///< each holds a descriptor
        std::size_t waiting = 4;           ///< threads at once; for more of them the answer is Busy
    };
    /** workshop must outlive this object. */
    explicit CViewPages(CWorkshop& workshop);
    CViewPages(CWorkshop& workshop, COptions options);
    CViewPages(const CViewPages&) = delete;
    CViewPages& operator=(const CViewPages&) = delete;
    ~CViewPages();

    /** The page of a model; makes it where there is none, once for all who ask meanwhile. store is of the calling thread.
     * Errors are those of CWorkshop and of the store. */
    [[nodiscard]] CResult<CMadePage> Get(CModelStore& store, const CModelRecord& record);

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
