// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

#include "frame/preview/CPreviewRequest.h"
#include "frame/preview/CPreviewResult.h"

class CPreviewCache;
class CPreviewDisplay;
class CPreviewWorker;

/** Decides which preview is drawn and shown while the user moves through a folder. Only the newest selection
 * counts; it is drawn after it has lasted for kSettle. Only one drawing runs at a time, and it is killed when
 * it is no longer wanted or takes longer than kPatience. The class has no clock: the caller passes the time
 * to each call and calls OnTime at NextTime. All calls come from one thread. */
class CPreviewQueue {
  public:
    using CTime = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds kSettle{60};        ///< from a selection to its drawing
    static constexpr std::chrono::milliseconds kPatience{10'000};  ///< how long one drawing may take

    /** All three must outlive it. */
    CPreviewQueue(CPreviewWorker& worker, CPreviewDisplay& display, CPreviewCache& cache);

    /** The selection changed or was repeated; nothing: no file is selected. */
    void Select(const std::optional<CPreviewRequest>& request, CTime now);
    /** The worker's drawing has ended: with success, with failure, or by Kill. */
    void OnEnded(const CPreviewResult& result, CTime now);
    void OnTime(CTime now);
    /** When to call OnTime next; nothing: not before another function was called. */
    [[nodiscard]] std::optional<CTime> NextTime() const;

  private:
    void StartIfDue(CTime now);
    void KillRunning();
    void Show(const CPreviewResult& result);

    struct CRunning {
        CPreviewRequest request;
        CTime deadline;
        bool killed = false;
    };

    CPreviewWorker& m_worker;
    CPreviewDisplay& m_display;
    CPreviewCache& m_cache;
    std::optional<CPreviewRequest> m_selected;
    bool m_isShown = true;  // the selection has its picture or reason
    CTime m_due;            // when the selection may be drawn
    std::optional<CRunning> m_running;
};
