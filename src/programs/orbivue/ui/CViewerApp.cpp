// SPDX-License-Identifier: MIT
#include "programs/orbivue/ui/CViewerApp.h"

#include <wx/cmdline.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/msgout.h>
#include <wx/weakref.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "base/process_memory.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/start_program.h"
#include "files/std_file_paths.h"
#include "frame/ui/CAViewerFrame.h"
#include "frame/ui/CFileCommands.h"
#include "programs/orbivue/command_line.h"
#include "programs/orbivue/convert.h"
#include "settings/CSettings.h"
#include "settings/choose_language.h"
#include "update/ui/updates.h"
#include "widgets/CUserPrompt.h"
#include "widgets/access/ui/toolkit_access.h"
#include "widgets/tools/ui/layout_direction.h"
#include "widgets/ui/CWxUserPrompt.h"
#include "widgets/ui/end_signals.h"
#include "widgets/ui/show_first.h"

namespace {

constexpr char kAppName[] = "Orbivue";

/** The exit code when no window is wanted: the toolkit has only one for all these cases. */
std::optional<int> s_exitCode;

void Complain(const std::string& sentence) {
    std::fprintf(stderr, "%s: %s\n", kAppName, sentence.c_str());
}
void Complain(const CError& error) {
    Complain(lng::TextForTerminal(error));
}

/** Discards the messages of a trial parse of the command line. */
class CNoMessages final : public wxMessageOutput {
  public:
    void Output(const wxString&) override {}
};

/** Messages on standard error: a box would be the default, and there may be no windows. */
void PrintMessages(FILE* stream = stderr) {
    delete wxMessageOutput::Set(new wxMessageOutputStderr(stream));
}

/** Sets an environment variable of this process during its lifetime. */
class CVariableGuard {
  public:
    CVariableGuard(const char* name, const char* value) : m_name(name) {
        if (const char* before = std::getenv(name)) m_before = before;
        setenv(name, value, 1);
    }
    CVariableGuard(const CVariableGuard&) = delete;
    CVariableGuard& operator=(const CVariableGuard&) = delete;
    ~CVariableGuard() {
        if (m_before)
            setenv(m_name, m_before->c_str(), 1);
        else
            unsetenv(m_name);
    }

  private:
    const char* m_name;
    std::optional<std::string> m_before;
};

/** The run of blanks in the description of -c aligns the example. */
constexpr const char* kConvertText = lng::Mark(
    "converts 3ds file to POV-Ray:              Orbivue.exe -c source_file.3ds dest_file.pov(optional)");

}  // namespace

wxIMPLEMENT_APP_NO_MAIN(CViewerApp);

int main(int argc, char** argv) {
    const CUserEnvironment environment;
    (void)std::signal(SIGXFSZ, SIG_IGN);  // a file beyond the user's limit fails as on a full disk
    // Decoded as file names, whatever the locale: in the locale "C", which scripts use, the toolkit takes
    // them for Latin-1.
    std::vector<std::wstring> arguments;
    const auto count = static_cast<std::size_t>(argc);
    arguments.reserve(count);
    for (std::size_t i = 0; i < count; ++i) arguments.push_back(file_util_ex::PathFromBytes(argv[i]));
    std::vector<wchar_t*> pointers;
    pointers.reserve(count + 1);
    for (std::wstring& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    // The toolkit's assertion dialogs are for its developers, not for users.
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
    lng::LoadSettingsAndTexts();
    lng::SetLanguage(CSettings::Instance().language);
    std::vector<wchar_t*> ours = WithoutToolkitOptions({argv, argv + argc});
    m_withoutWindows = !AsksForWindow(ours);
    if (m_withoutWindows) {
        argc = static_cast<int>(ours.size());
        ours.push_back(nullptr);
        std::ranges::copy(ours, argv);
        return wxAppConsole::Initialize(argc, argv);
    }
#if defined(__WXGTK__) && !wxUSE_GLCANVAS_EGL
    // This toolkit's OpenGL windows speak GLX alone; on a Wayland desktop they work through its X server.
    const CVariableGuard backend("GDK_BACKEND", "x11");
#endif
    const wxLogNull quiet;  // the toolkit's own message does not say what to do
    if (wxApp::Initialize(argc, argv)) {
        SetToolkitDirection();
        MakeToolkitAccessible();
        return true;
    }
    Complain(
        lng::TextUtf8("there is no display to open a window on; orbivue-render draws models without one."));
    s_exitCode = kExitNoDisplay;
    return false;
}

bool CViewerApp::AsksForWindow(std::vector<wchar_t*> arguments) {
    wxCmdLineParser parser(static_cast<int>(arguments.size()), arguments.data());
    OnInitCmdLine(parser);
    delete wxMessageOutput::Set(new CNoMessages);
    const bool makesSense = parser.Parse(false) == 0;
    PrintMessages();
    return makesSense && !parser.Found("c") && !parser.Found("version");
}

wxLayoutDirection CViewerApp::GetLayoutDirection() const {
    return LayoutDirection();
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
    // Unseen in the summary.
    parser.AddLongSwitch("version", {}, wxCMD_LINE_HIDDEN);
    parameter(lng::Mark("3ds input file"), wxCMD_LINE_PARAM_OPTIONAL);
    // Any number of parameters, because a path may contain several blanks.
    parameter(lng::Mark("POV-Ray output file"), wxCMD_LINE_PARAM_OPTIONAL | wxCMD_LINE_PARAM_MULTIPLE);
    parser.SetSwitchChars("-");
}

bool CViewerApp::OnCmdLineParsed(wxCmdLineParser& parser) {
    if (parser.Found("h")) {
        m_helpRequested = true;
        return false;
    }
    if (parser.Found("version")) {
        s_exitCode = std::printf("%s %s\n", kAppName, ORBIVUE_VERSION) > 0 && std::fflush(stdout) == 0
                         ? kExitDone
                         : kExitFailed;
        return false;
    }
    std::vector<std::wstring> parameters;
    for (std::size_t i = 0; i < parser.GetParamCount(); ++i)
        parameters.push_back(PathOfParameter(parser.GetParam(i).ToStdWstring()));
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
    PrintMessages(stdout);
    return wxApp::OnCmdLineHelp(parser);
}

bool CViewerApp::OnInit() {
    s_exitCode = kExitBadUsage;  // until another outcome is known
    if (!wxApp::OnInit()) {
        m_helpRequested = true;
        return false;
    }
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
        Complain(lng::TextUtf8(
            "this display has no OpenGL for windows; orbivue-render draws models without a window."));
        s_exitCode = kExitNoDisplay;
        return false;
    }
    s_exitCode.reset();
    SetTopWindow(frame);
    ShowFirst(*frame);
    EndOrderlyOnSignals();
    StartUpdates(CSettings::Instance().autoUpdate,
                 [window = wxWeakRef(frame)](const std::function<void()>& work) {
                     if (window) window->Files().HoldModel(0, work);
                 });
    const CResult<std::wstring> model = ModelToOpen(std::exchange(m_inputPath, {}));
    const auto complain = [](const CError& error) { Complain(error); };
    if (model)
        frame->OpenByPath(model.Value(), complain);
    else if (!model.Error().message.empty())
        Complain(model.Error());
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
    (void)std::raise(signal);  // so that the sender sees that the signal ended it
}

void CViewerApp::KeepSettings() {
    CSettings& settings = CSettings::Instance();
    if (settings.lastCamera == -1) settings.lastCamera = CSettings::kIsoCamera;
    (void)settings.WriteAll();  // no window is left to show an error
    StopUpdates();
    std_file_paths::DeleteTempDir();
}

int CViewerApp::OnExit() {
    if (!m_helpRequested && !m_convert) KeepSettings();
    CUserPrompt::Install(nullptr);
    return wxApp::OnExit();
}
