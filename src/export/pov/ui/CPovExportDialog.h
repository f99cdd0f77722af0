// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>
#include <wx/timer.h>

#include "export/pov/C3ds2Pov.h"
#include "export/pov/C3ds2PovExportFlow.h"

class CPovExportProgCtrl;
class wxButton;
/** Exports what is seen as soon as the window is on the screen, to the path CSettings::povLastName, and shows how
 * far it has come. The window cannot be closed before the export has ended. How that ended is not told. */
class CPovExportDialog final : public wxDialog, private C3ds2PovExportFlow {
  public:
    static constexpr int kIdOpen = 5100;
    static constexpr int kIdClose = 5101;

    /** The scene stays the caller's and must not change while the window is open. */
    CPovExportDialog(wxWindow* parent, const C3ds2Pov::COutFormat& format, const CPovSource& source);

    /** Has the export begin when the window has had the time to appear. Followed by ShowModal. */
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
