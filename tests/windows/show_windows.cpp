// SPDX-License-Identifier: MIT
// orbivue-windows LANGUAGE [--pictures FOLDER] [--hold] [NAME...]: see Usage below.
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/image.h>
#include <wx/init.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>

#include "base/text/lng.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "frame/ui/CAViewerFrame.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettings.h"
#include "settings/choose_language.h"
#include "widgets/CUserPrompt.h"
#include "widgets/access/ui/CDialogAccess.h"
#include "widgets/access/ui/toolkit_access.h"
#include "widgets/tools/ui/layout_direction.h"
#include "widgets/ui/CWxUserPrompt.h"
#include "windows/CStage.h"
#include "windows/window_list.h"

namespace fs = std::filesystem;

namespace {

constexpr char kUsage[] =
    "orbivue-windows LANGUAGE [--pictures FOLDER] [--hold] [NAME...]\n"
    "Opens each window of the program, or those named, in a language, and lists what cannot be read whole.\n"
    "--pictures: saves what the screen shows of each, FOLDER/NAME.png. Ends with 1 where something is cut.\n"
    "--hold: modal dialogs stay open until somebody closes them.\n";

class CWindowsApp final : public wxApp {
  public:
    CWindowsApp() { SetAppName("Orbivue"); }
    wxLayoutDirection GetLayoutDirection() const override { return LayoutDirection(); }
};

/** As the program's start does. */
void Speak(const char* language) {
    std_file_paths::SetAppName("Orbivue");
    lng_util_internal::SetDomain(lng::Domain(), "viewer");
    CSettings::Instance().language = file_util_ex::ConvertFromUTF8W(language);
    lng::SetLanguage(CSettings::Instance().language);
    SetToolkitDirection();
    MakeToolkitAccessible();
}

CStage::COptions ReadOptions(int argc, char** argv) {
    CStage::COptions options;
    for (int i = 2; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--pictures" && i + 1 < argc)
            options.folder = argv[++i];
        else if (std::string_view(argv[i]) == "--hold")
            options.holds = true;
        else
            options.names.emplace_back(argv[i]);
    }
    return options;
}

/** Models to open, and a drive that is a folder. */
void Furnish(const CTestFolder& folder) {
    for (const auto& sample : fs::directory_iterator(std_file_paths::GetDataPath("samples")))
        if (sample.path().extension() == ".3ds") fs::copy(sample.path(), folder.Path());
    (void)folder.Add("rclone.conf", "[drive]\ntype = alias\nremote = " + folder.Path() + "\n");
}

int ShowAndJudge(const CStage::COptions& options, const char* language) {
    const CTestFolder folder;
    Furnish(folder);
    CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
    CUserPrompt::Install(std::make_unique<CWxUserPrompt>());
    CDialogAccess access;
    access.Register();
    auto* frame = new CAViewerFrame("Orbivue");
    wxTheApp->SetTopWindow(frame);
    frame->Maximize(false);
    frame->SetSize(frame->FromDIP(wxSize(1100, 780)));
    frame->Show();
    CStage::Wait(500);
    CStage stage(*frame, options);
    ShowAllWindows(stage, folder.Path());
    for (const std::string& fault : stage.Faults()) std::printf("%s %s\n", language, fault.c_str());
    frame->Close(true);
    wxTheApp->ProcessIdle();
    CUserPrompt::Install(nullptr);
    return stage.Faults().empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || *argv[1] == '-') return std::fputs(kUsage, stderr), 2;
    const CStage::COptions options = ReadOptions(argc, argv);
    wxApp::SetInstance(new CWindowsApp);
    int none = 1;
    if (!wxEntryStart(none, argv)) return 2;
    wxDISABLE_ASSERTS_IN_RELEASE_BUILD();
    wxInitAllImageHandlers();
    Speak(argv[1]);
    wxEventLoop loop;
    int result = 2;
    {
        const wxEventLoopActivator active(&loop);
        result = ShowAndJudge(options, argv[1]);
    }
    wxEntryCleanup();
    return result;
}
