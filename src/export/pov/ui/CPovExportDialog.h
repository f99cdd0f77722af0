// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>
#include <wx/timer.h>

#include "export/pov/C3ds2Pov.h"
#include "export/pov/C3ds2PovExportFlow.h"

class CPovExportProgCtrl;
class wxButton;
/** Exports to CSettings::povLastName as soon as the window is on the screen, and shows the progress. The
 * window cannot be closed before the export has ended. It does not show whether the export succeeded. */
class CPovExportDialog final : public wxDialog, private C3ds2PovExportFlow {
  public:
    static constexpr int kIdOpen = 5100;
    static constexpr int kIdClose = 5101;

    /** The scene stays the caller's and must not change while the window is open. */
    CPovExportDialog(wxWindow* parent, const C3ds2Pov::COutFormat& format, const CPovSource& source);

    /** Starts the export after the time that the window needs to appear. Call ShowModal next. */
    void StartSoon();
    /** Ignored as long as the export has not ended. */
    void EndModal(int code) override;

  private:
    void Export();
    void OpenWithPovRay();

    void Begin(int steps) override;
    void Step() override;
    void Finished() override;
    void Message(int) override {}
    void Work(const std::function<void()>& work) override;

    C3ds2Pov::COutFormat m_format;
    CPovSource m_source;
    wxTimer m_timer;
    CPovExportProgCtrl* m_bar;
    wxButton* m_open;
    wxButton* m_close;
    bool m_finished = false;
};
