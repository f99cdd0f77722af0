// SPDX-License-Identifier: MIT
#pragma once

#include <wx/timer.h>
#include <wx/weakref.h>

#include <memory>

#include "base/jobs/CJob.h"
#include "update/CUpdatePresenter.h"
#include "update/check_for_update.h"
#include "update/ui/updates.h"

class CUpdateBar;

/** The windows of the update service. A check on its own account begins some seconds after the start, when the program rests;
 * what it finds waits in a bar of the main window, and of what goes wrong nobody hears. */
class CUpdateChecks final : public CUpdatePresenter {
  public:
    /** hold: as StartUpdates takes it. quietMs: how long after the start a check of its own may begin. */
    explicit CUpdateChecks(CHoldForWindow hold = {}, int quietMs = 8'000);
    CUpdateChecks(const CUpdateChecks&) = delete;
    CUpdateChecks& operator=(const CUpdateChecks&) = delete;
    ~CUpdateChecks();

    void OnStarted(const CUpdateDetails& details) override;
    void CheckWithWindows() override;
    void OnEnded() override;
    /** For tests: certificates that are trusted instead of the system's (a file). */
    void Trust(std::string certificates) { m_request.certificates = std::move(certificates); }

  private:
    void OnTick();
    void BeginUnasked();
    void EndUnasked();
    void ShowBar();
    void ShowNews(const CUpdateOutcome& outcome);
    void CloseBar();

    CHoldForWindow m_hold;
    int m_quietMs;
    CFeedRequest m_request;
    CUpdateTarget m_target;
    std::wstring m_version;
    wxTimer m_timer;
    bool m_isModal = false;
    CUpdateOutcome m_outcome;     ///< written by the job
    std::unique_ptr<CJob> m_job;  ///< the check that nobody asked for
    wxWeakRef<CUpdateBar> m_bar;
};
