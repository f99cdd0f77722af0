// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "modeldb/server/CAccess.h"
#include "modeldb/server/CServerOptions.h"
#include "modeldb/server/CStorePool.h"
#include "modeldb/server/CWorkers.h"
#include "modeldb/server/http/CHttpSite.h"
#include "modeldb/server/spooled_upload.h"

class CPreviewQueue;
class CWorkshop;

struct CUploadCounts {
    std::atomic<std::uint64_t> added{0}, same{0}, refused{0}, failed{0};
};

/** Takes uploads: what a body announces is checked before it is read, and the model is read in a confined process before
 * anything of it reaches the store. A preview is drawn after the answer. */
class CUploadDesk {
  public:
    /** previews may be null. All must outlive this object; log: CServerOptions::complain. */
    CUploadDesk(const CServerOptions& options, CStorePool& stores, CAccess& access, CWorkshop& workshop,
                CPreviewQueue* previews);

    /** What can be said before the body: type, size, token, the peer's turns, the queue. */
    [[nodiscard]] std::optional<CHttpAnswer> Refuse(const CHttpRequest& request);
    void Take(CHttpBody body, CHttpReply reply);
    /** Drops the uploads that wait; returns when those under way have ended. */
    void Stop() { m_workers.Stop(); }

    [[nodiscard]] const CUploadCounts& Counts() const { return m_counts; }
    [[nodiscard]] std::size_t Waiting() const { return m_workers.Waiting(); }

  private:
    [[nodiscard]] CHttpAnswer Work(CHttpBody body);
    [[nodiscard]] CResult<CAddedModel> Add(const CSpooledUpload& upload);
    [[nodiscard]] CStatus CheckRoom(CModelStore& store, const std::string& group) const;
    [[nodiscard]] CStatus Inspect(const CSpooledUpload& upload);
    [[nodiscard]] CHttpAnswer AnswerOf(const CResult<CAddedModel>& added);

    const CServerOptions& m_options;
    CStorePool& m_stores;
    CAccess& m_access;
    CWorkshop& m_workshop;
    CPreviewQueue* m_previews;
    CTurns m_turns;
    CUploadCounts m_counts;
    CWorkers m_workers;  // last: its threads use all above
};
