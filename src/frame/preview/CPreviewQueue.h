// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

#include "frame/preview/CPreviewRequest.h"
#include "frame/preview/CPreviewResult.h"

class CPreviewCache;
class CPreviewDisplay;
class CPreviewWorker;

/** Decides what is drawn and shown while somebody walks through a folder: only the newest selection counts,
 * one drawing goes on at a time, a selection is drawn once it has lasted a moment, and a drawing that is no
 * longer wanted or takes too long is killed. Holds no clock: each call says what time it is, and OnTime is to
 * be called at NextTime. One thread. */
class CPreviewQueue {
  public:
    using CTime = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds kSettle{60};  ///< how long a selection lasts until it is drawn
    static constexpr std::chrono::milliseconds kPatience{10'000};  ///< how long one drawing may take

    /** All three must outlive it. */
    CPreviewQueue(CPreviewWorker& worker, CPreviewDisplay& display, CPreviewCache& cache);

    /** The selection changed, perhaps to what it was; nothing: no file is selected. */
    void Select(const std::optional<CPreviewRequest>& request, CTime now);
    /** What the worker had started has ended, well, badly or by Kill. */
    void OnEnded(const CPreviewResult& result, CTime now);
    void OnTime(CTime now);
    /** When OnTime has something to do; nothing: not before another call. */
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
