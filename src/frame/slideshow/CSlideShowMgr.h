// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "frame/slideshow/CPresentationRounds.h"
#include "frame/slideshow/CSlideShowHost.h"

/** The slideshow: steps from model to model by a timer. It is running exactly while it has a timer. Each timer reports
 * once, and the next one starts when the model has been opened, so that the time that a model is shown is counted
 * from the end of its opening.
 *
 * Models that cannot be opened are passed over at once; when none of the folder can, the show stops. While the host is busy
 * a step is put off by another period. A show of a presentation ends as CPresentationRounds says. */
class CSlideShowMgr {
  public:
    static constexpr int kDefaultMs = 3000;

    /** host must outlive it. */
    explicit CSlideShowMgr(CSlideShowHost& host) : m_host(host) {}

    /** Starts anew if it is running. With an interval below 1 it takes the tool and ends a timer, but nothing runs. */
    void Start();
    /** An interval below 1 becomes kDefaultMs. */
    void Stop();
    void Toggle();
    /** Counts the time of the model shown from now on; does nothing while stopped. */
    void Rearm();
    /** How long a model is shown, in milliseconds. A timer that runs keeps its time. */
    void SetInterval(int periodMs) { m_intervalMs = periodMs; }
    [[nodiscard]] int Interval() const { return m_intervalMs; }
    [[nodiscard]] bool IsRunning() const { return m_timer != nullptr; }

    /** To be called after every model that was opened, with the number of models that can be stepped through. */
    void OnModelOpened(int count);
    /** To be called after every opening that failed. */
    void OnOpenFailed(int count);
    /** To be called for a model that a scene script shows, before OnModelOpened. timeMs: the script's own time for
     * it, with which a show starts, unless it is another scene of the script shown (somebody has stopped that
     * one's); 0 or less: none, and models are shown for kDefaultMs. index, count, loop, script: see
     * CPresentationRounds. */
    void OnScriptScene(int timeMs, const std::wstring& script, std::size_t index, std::size_t count,
                       int loop);
    /** The same for a model that none shows. */
    void OnPlainModel() { (void)m_rounds.Opened({}, 0, 0, 0); }
    /** The time of the host's timer is over. */
    void OnTimer();

  private:
    [[nodiscard]] int UsableInterval() const { return m_intervalMs < 1 ? kDefaultMs : m_intervalMs; }
    void Arm(int periodMs);
    void Rest(EShowButton button);
    void End(EShowEnd why);

    CSlideShowHost& m_host;
    std::unique_ptr<CSlideShowTimer> m_timer;
    int m_intervalMs = kDefaultMs;
    int m_count = 0;        ///< of models, when the last one was opened
    int m_failures = 0;     ///< in a row
    bool m_isTold = false;  ///< how the step that runs has ended
    CPresentationRounds m_rounds;
};
