// SPDX-License-Identifier: MIT
#pragma once

#include <wx/app.h>

#include <string>
#include <vector>

/** The program: reads the command line and the settings, and either converts a model to POV-Ray, or shows the
 * frame, opens the model named, and writes the settings back at the end. For a conversion and for help it
 * starts no window system. See EExitCode for what the process answers. */
class CViewerApp final : public wxApp {
  public:
    CViewerApp();

    /** Judges the command line first. False, after one sentence on the error output, when it asks for a window and
     * there is no display. */
    bool Initialize(int& argc, wxChar** argv) override;
    void CleanUp() override;
    void OnInitCmdLine(wxCmdLineParser& parser) override;
    bool OnCmdLineParsed(wxCmdLineParser& parser) override;
    bool OnCmdLineHelp(wxCmdLineParser& parser) override;
    bool OnInit() override;
    int OnExit() override;

  private:
    /** False for help, the version, a conversion, and a command line that makes no sense. */
    [[nodiscard]] bool AsksForWindow(std::vector<wchar_t*> arguments);
    void LoadSettings();
    bool ShowFrame();
    void EndOrderlyOnSignals();
    /** Keeps what a normal end keeps, and ends: a desktop ends its session so. */
    void EndBySignal(int signal);
    /** Writes the settings and removes the temporary folder. */
    void KeepSettings();

    std::wstring m_inputPath;
    std::wstring m_outputPath;  ///< of a conversion
    bool m_helpRequested = false;
    bool m_convert = false;
    bool m_withoutWindows = false;
};
