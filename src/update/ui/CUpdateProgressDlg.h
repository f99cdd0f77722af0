// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>
#include <wx/timer.h>

#include "base/jobs/CJob.h"

class wxGauge;

/** Runs a check and shows that it goes on. Ends with wxID_OK when the check has ended, with wxID_CANCEL when the user ends it. */
class CUpdateProgressDlg final : public wxDialog {
  public:
    CUpdateProgressDlg(wxWindow* parent, const CJob::CWork& check);

  private:
    void OnTick();

    wxGauge* m_gauge;
    wxTimer m_timer;
    CJob m_job;
};
