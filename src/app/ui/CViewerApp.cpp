// SPDX-License-Identifier: MIT
#include "app/ui/CViewerApp.h"

#include <wx/cmdline.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/msgout.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "app/command_line.h"
#include "app/ui/CPlainFrame.h"
#include "platform/file_util_ex.h"
#include "platform/process_memory.h"
#include "platform/std_file_paths.h"
#include "settings/CSettings.h"

wxIMPLEMENT_APP(CViewerApp);

namespace {

constexpr char kAppName[] = "Orbivue";

constexpr wxCmdLineEntryDesc kCommandLine[] = {
    {wxCMD_LINE_SWITCH, "h", "help", "Shows this help", wxCMD_LINE_VAL_NONE, wxCMD_LINE_OPTION_HELP},
    {wxCMD_LINE_PARAM, nullptr, nullptr, "3ds input file", wxCMD_LINE_VAL_STRING, wxCMD_LINE_PARAM_OPTIONAL},
    {wxCMD_LINE_PARAM, nullptr, nullptr, "POV-Ray output file", wxCMD_LINE_VAL_STRING,
     wxCMD_LINE_PARAM_OPTIONAL},
    {wxCMD_LINE_NONE, nullptr, nullptr, nullptr, wxCMD_LINE_VAL_NONE, 0}};

void Complain(const char* sentence) {
    std::fprintf(stderr, "%s: %s\n", kAppName, sentence);
}

std::vector<std::wstring> Arguments(int argc, wxChar** argv) {
    std::vector<std::wstring> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);
    return arguments;
}

}  // namespace

CViewerApp::CViewerApp() {
    process_memory::KeepFreedBlocks();
    SetAppName(kAppName);
    std_file_paths::SetAppName(kAppName);
}

bool CViewerApp::Initialize(int& argc, wxChar** argv) {
    m_withoutWindows = NeedsNoWindow(Arguments(argc, argv));
    if (m_withoutWindows) return wxAppConsole::Initialize(argc, argv);
#if defined(__WXGTK__) && !wxUSE_GLCANVAS_EGL
    // This toolkit's OpenGL windows speak GLX alone; on a Wayland desktop they work through its X server.
    setenv("GDK_BACKEND", "x11", 1);
#endif
    const wxLogNull quiet;  // the toolkit's own words name no way out
    if (wxApp::Initialize(argc, argv)) return true;
    Complain("there is no display to open a window on; orbivue-render draws models without one.");
    return false;
}

void CViewerApp::CleanUp() {
    if (m_withoutWindows)
        wxAppConsole::CleanUp();
    else
        wxApp::CleanUp();
}

void CViewerApp::OnInitCmdLine(wxCmdLineParser& parser) {
    parser.SetDesc(kCommandLine);
    parser.SetSwitchChars("-");
    // A message box would be the default, and there may be no windows.
    delete wxMessageOutput::Set(new wxMessageOutputStderr(m_withoutWindows ? stdout : stderr));
}

bool CViewerApp::OnCmdLineParsed(wxCmdLineParser& parser) {
    if (parser.Found("h")) {
        m_helpRequested = true;
        return false;
    }
    std::vector<std::wstring> parameters;
    for (std::size_t i = 0; i < parser.GetParamCount(); ++i)
        parameters.push_back(parser.GetParam(i).ToStdWstring());
    m_inputPath =
        JoinModelPath(parameters, [](const std::wstring& path) { return file_util_ex::DoesFileExist(path); });
    return true;
}

bool CViewerApp::OnInit() {
    if (!wxApp::OnInit()) {
        m_helpRequested = true;
        return false;
    }
    LoadSettings();
    wxInitAllImageHandlers();

    auto* frame = new CPlainFrame(kAppName);
    if (!frame->HasView()) {
        delete frame;
        Complain("this display has no OpenGL for windows; orbivue-render draws models without one.");
        return false;
    }
    SetTopWindow(frame);
    frame->Show();
    if (!m_inputPath.empty() && file_util_ex::DoesFileExist(m_inputPath)) frame->OpenByPath(m_inputPath);
    m_inputPath.clear();
    return true;
}

void CViewerApp::LoadSettings() {
    (void)CSettings::LoadFile();  // without a file the defaults hold
    CSettings::Instance().ReadAll();
}

int CViewerApp::OnExit() {
    if (!m_helpRequested) {
        CSettings& settings = CSettings::Instance();
        if (settings.lastCamera == -1) settings.lastCamera = CSettings::kIsoCamera;
        (void)settings.WriteAll();  // nobody is left to be told
        std_file_paths::DeleteTempDir();
    }
    return wxApp::OnExit();
}
