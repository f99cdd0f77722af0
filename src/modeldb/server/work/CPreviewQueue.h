// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "base/CResult.h"
#include "modeldb/database/CStoreAddress.h"

class CModelStore;
class CWorkshop;

/** What a queue has done since it began. */
struct CPreviewCounts {
    std::uint64_t drawn = 0, failed = 0, waiting = 0;
};

/** Draws the previews of models that have none, on a thread of its own with a connection of its own: those that it is told
 * of at once, and the others that the store holds little by little. A model that cannot be drawn is tried once. */
class CPreviewQueue {
  public:
    struct COptions {
        std::size_t mostWaiting = 10'000;        ///< what comes beyond is found again in the store later
        std::chrono::milliseconds pause{2'000};  ///< between two pictures that nobody waits for
        bool sweeps = true;                      ///< false: it draws what it is told of alone
    };
    /** workshop must outlive this object. */
    CPreviewQueue(CStoreAddress address, CWorkshop& workshop, COptions options);
    CPreviewQueue(CStoreAddress address, CWorkshop& workshop);
    CPreviewQueue(const CPreviewQueue&) = delete;
    CPreviewQueue& operator=(const CPreviewQueue&) = delete;
    /** Ends the thread; call CWorkshop::Stop before, or it waits for the picture that is being drawn. */
    ~CPreviewQueue();

    /** A model that was added. Returns at once. Any thread. */
    void Add(std::uint32_t key);
    [[nodiscard]] CPreviewCounts Counts() const;

    /** Draws a model's preview and gives it to the store, unless it has one; blocks. */
    [[nodiscard]] static CStatus DrawNow(CModelStore& store, CWorkshop& workshop, std::uint32_t key);

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
