// SPDX-License-Identifier: MIT
#pragma once

#include <wx/app.h>

#include <string>
#include <vector>

/** The program: reads the command line and the settings, then either converts a model to POV-Ray, or shows
 * the main window, opens the named model, and writes the settings at the end. A conversion and the help need
 * no window system. See EExitCode for the exit codes. */
class CViewerApp final : public wxApp {
  public:
    CViewerApp();

    /** Checks the command line first. False, after one sentence on the error output, when it needs a window
     * and there is no display. */
    bool Initialize(int& argc, wxChar** argv) override;
    void CleanUp() override;
    /** Windows take it when they are made. */
    [[nodiscard]] wxLayoutDirection GetLayoutDirection() const override;
    void OnInitCmdLine(wxCmdLineParser& parser) override;
    bool OnCmdLineParsed(wxCmdLineParser& parser) override;
    bool OnCmdLineHelp(wxCmdLineParser& parser) override;
    bool OnInit() override;
    int OnExit() override;

  private:
    /** False for help, the version, a conversion, and a wrong command line. */
    [[nodiscard]] bool AsksForWindow(std::vector<wchar_t*> arguments);
    bool ShowFrame();
    void EndOrderlyOnSignals();
    /** Stores what a normal end stores, then ends the process. Desktops end programs by a signal when the
     * session ends. */
    void EndBySignal(int signal);
    /** Writes the settings, ends the update service and removes the temporary folder. */
    void KeepSettings();

    std::wstring m_inputPath;
    std::wstring m_outputPath;  ///< of a conversion
    bool m_helpRequested = false;
    bool m_convert = false;
    bool m_withoutWindows = false;
};
