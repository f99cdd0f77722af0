// SPDX-License-Identifier: MIT
#pragma once

struct CPreviewRequest;

/** Who draws previews, one at a time, for a CPreviewQueue. */
class CPreviewWorker {
  public:
    CPreviewWorker() = default;
    CPreviewWorker(const CPreviewWorker&) = delete;
    CPreviewWorker& operator=(const CPreviewWorker&) = delete;
    virtual ~CPreviewWorker() = default;

    /** Begins, and returns at once. True promises one call of CPreviewQueue::OnEnded, later,
     * never from in here. */
    [[nodiscard]] virtual bool Start(const CPreviewRequest& request) = 0;
    /** Ends what was started as soon as can be; OnEnded follows all the same. */
    virtual void Kill() = 0;
};
