// SPDX-License-Identifier: MIT
#pragma once

struct CPreviewRequest;

/** Draws previews for a CPreviewQueue, one at a time. */
class CPreviewWorker {
  public:
    CPreviewWorker() = default;
    CPreviewWorker(const CPreviewWorker&) = delete;
    CPreviewWorker& operator=(const CPreviewWorker&) = delete;
    virtual ~CPreviewWorker() = default;

    /** Starts a drawing and returns at once. After true, CPreviewQueue::OnEnded is called once, later, not
     * during this call. */
    [[nodiscard]] virtual bool Start(const CPreviewRequest& request) = 0;
    /** Ends the running drawing as soon as possible; OnEnded is still called. */
    virtual void Kill() = 0;
};
