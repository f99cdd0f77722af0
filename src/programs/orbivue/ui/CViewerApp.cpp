// SPDX-License-Identifier: MIT
#include "programs/orbivue/ui/CViewerApp.h"

#include <wx/cmdline.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/msgout.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "base/process_memory.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "frame/ui/CAViewerFrame.h"
#include "programs/orbivue/command_line.h"
#include "programs/orbivue/convert.h"
#include "settings/CSettings.h"
#include "settings/choose_language.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/CWxUserPrompt.h"
#include "widgets/ui/end_signals.h"
#include "widgets/ui/show_first.h"

namespace {

constexpr char kAppName[] = "Orbivue";

/** Where no window is wanted, what the process answers: the toolkit itself knows one answer for all that. */
std::optional<int> s_exitCode;

void Complain(const char* sentence) {
    std::fprintf(stderr, "%s: %s\n", kAppName, sentence);
}

std::vector<std::wstring> Arguments(int argc, wxChar** argv) {
    std::vector<std::wstring> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);
    return arguments;
}

/** The description of -c keeps its run of blanks: it lines the example up. */
constexpr const char* kConvertText = lng::Mark(
    "converts 3ds file to POV-Ray:              Orbivue.exe -c source_file.3ds dest_file.pov(optional)");

}  // namespace

wxIMPLEMENT_APP_NO_MAIN(CViewerApp);

int main(int argc, char** argv) {
    // As names of files are, whatever the locale: the toolkit takes them for Latin-1 in that of scripts, "C".
    std::vector<std::wstring> arguments;
    const auto count = static_cast<std::size_t>(argc);
    arguments.reserve(count);
    for (std::size_t i = 0; i < count; ++i) arguments.push_back(file_util_ex::ConvertFromUTF8W(argv[i]));
    std::vector<wchar_t*> pointers;
    pointers.reserve(count + 1);
    for (std::wstring& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    // Its developers' questions are nothing to ask a user.
    wxDISABLE_ASSERTS_IN_RELEASE_BUILD();
    const int code = wxEntry(argc, pointers.data());
    return s_exitCode.value_or(code);
}

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
    s_exitCode = kExitNoDisplay;
    return false;
}

void CViewerApp::CleanUp() {
    if (m_withoutWindows)
        wxAppConsole::CleanUp();
    else
        wxApp::CleanUp();
}

void CViewerApp::OnInitCmdLine(wxCmdLineParser& parser) {
    const auto parameter = [&parser](const char* description, int flags) {
        parser.AddParam(lng::Text(description), wxCMD_LINE_VAL_STRING, flags);
    };
    parser.AddSwitch("h", lng::Text("help"), lng::Text("Shows this help"), wxCMD_LINE_OPTION_HELP);
    parser.AddSwitch("c", lng::Text("convert"), lng::Text(kConvertText));
    parameter(lng::Mark("3ds input file"), wxCMD_LINE_PARAM_OPTIONAL);
    // As many as there are: a path may hold more than one blank.
    parameter(lng::Mark("POV-Ray output file"), wxCMD_LINE_PARAM_OPTIONAL | wxCMD_LINE_PARAM_MULTIPLE);
    parser.SetSwitchChars("-");
    // A message box would be the default, and there may be no windows.
    delete wxMessageOutput::Set(new wxMessageOutputStderr);
}

bool CViewerApp::OnCmdLineParsed(wxCmdLineParser& parser) {
    if (parser.Found("h")) {
        m_helpRequested = true;
        return false;
    }
    std::vector<std::wstring> parameters;
    for (std::size_t i = 0; i < parser.GetParamCount(); ++i)
        parameters.push_back(parser.GetParam(i).ToStdWstring());
    if (parser.Found("c")) {
        const std::optional<CConversionPaths> paths = ConversionPathsOf(parameters);
        m_convert = paths.has_value();
        if (!m_convert) {
            parser.Usage();
            return false;
        }
        m_inputPath = paths->input;
        m_outputPath = paths->output;
        return true;
    }
    m_inputPath =
        JoinModelPath(parameters, [](const std::wstring& path) { return file_util_ex::DoesFileExist(path); });
    return true;
}

bool CViewerApp::OnCmdLineHelp(wxCmdLineParser& parser) {
    s_exitCode = kExitDone;
    delete wxMessageOutput::Set(new wxMessageOutputStderr(stdout));
    return wxApp::OnCmdLineHelp(parser);
}

bool CViewerApp::OnInit() {
    lng_util_internal::SetDomain(lng::Domain(), "viewer");
    s_exitCode = kExitBadUsage;  // unless something better is known
    if (!wxApp::OnInit()) {
        m_helpRequested = true;
        return false;
    }
    LoadSettings();
    lng::SetLanguage(CSettings::Instance().language);
    if (m_convert) {
        s_exitCode = ConvertToPov(m_inputPath, m_outputPath) ? kExitDone : kExitFailed;
        return false;
    }
    wxInitAllImageHandlers();
    return ShowFrame();
}

bool CViewerApp::ShowFrame() {
    CUserPrompt::Install(std::make_unique<CWxUserPrompt>());
    auto* frame = new CAViewerFrame(kAppName);
    if (!frame->HasView()) {
        delete frame;
        Complain("this display has no OpenGL for windows; orbivue-render draws models without one.");
        s_exitCode = kExitNoDisplay;
        return false;
    }
    s_exitCode.reset();
    SetTopWindow(frame);
    ShowFirst(*frame);
    EndOrderlyOnSignals();
    if (!m_inputPath.empty() && file_util_ex::DoesFileExist(m_inputPath)) {
        // The list of recent files outlives the current folder.
        std::error_code error;
        const std::string folder = std::filesystem::current_path(error).string();
        frame->OpenByPath(file_util_ex::MakeAbsolute(file_util_ex::ConvertFromUTF8W(folder), m_inputPath));
    }
    m_inputPath.clear();
    return true;
}

void CViewerApp::EndOrderlyOnSignals() {
    std::atexit(
        std_file_paths::DeleteTempDir);  // the toolkit's own way out when the display server goes away
    WatchEndSignals([this](int signal) { EndBySignal(signal); });
}

void CViewerApp::EndBySignal(int signal) {
    if (auto* frame = dynamic_cast<CAViewerFrame*>(GetTopWindow())) frame->KeepState();
    KeepSettings();
    std::signal(signal, SIG_DFL);
    (void)std::raise(signal);  // whoever sent it sees what it did
}

void CViewerApp::LoadSettings() {
    (void)CSettings::LoadFile();  // without a file the defaults hold
    CSettings::Instance().ReadAll();
}

void CViewerApp::KeepSettings() {
    CSettings& settings = CSettings::Instance();
    if (settings.lastCamera == -1) settings.lastCamera = CSettings::kIsoCamera;
    (void)settings.WriteAll();  // nobody is left to be told
    std_file_paths::DeleteTempDir();
}

int CViewerApp::OnExit() {
    if (!m_helpRequested && !m_convert) KeepSettings();
    CUserPrompt::Install(nullptr);
    return wxApp::OnExit();
}
