// SPDX-License-Identifier: MIT
#pragma once

#include <wx/app.h>

#include <string>

/**
 * The program: reads the command line and the settings, shows the frame and opens the model named, and writes
 * the settings back at the end. Asked only for help it starts no window system.
 */
class CViewerApp final : public wxApp {
  public:
    CViewerApp();

    /** False, after one sentence on the error output, when there is no display. */
    bool Initialize(int& argc, wxChar** argv) override;
    void CleanUp() override;
    void OnInitCmdLine(wxCmdLineParser& parser) override;
    bool OnCmdLineParsed(wxCmdLineParser& parser) override;
    bool OnInit() override;
    int OnExit() override;

  private:
    void LoadSettings();

    std::wstring m_inputPath;
    bool m_helpRequested = false;
    bool m_withoutWindows = false;
};
