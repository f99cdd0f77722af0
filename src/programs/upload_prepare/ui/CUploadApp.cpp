// SPDX-License-Identifier: MIT
#include <wx/app.h>
#include <wx/image.h>
#include <wx/log.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/start_program.h"
#include "files/std_file_paths.h"
#include "programs/upload_prepare/join_upload.h"
#include "programs/upload_prepare/ui/CUploadDlg.h"
#include "programs/upload_prepare/upload_arguments.h"
#include "settings/CSettings.h"
#include "settings/choose_language.h"
#include "widgets/CUserPrompt.h"
#include "widgets/access/ui/CDialogAccess.h"
#include "widgets/access/ui/toolkit_access.h"
#include "widgets/tools/ui/layout_direction.h"
#include "widgets/ui/CWxUserPrompt.h"

namespace {

enum EExitCode { kExitDone = 0, kExitFailed = 1, kExitBadUsage = 2, kExitNoDisplay = 3 };

/** What was made ready, for the window, or why it could not be. */
struct CPrepared {
    CResult<CUploadContent> content;
    std::string modelName;
};
std::optional<CPrepared> s_prepared;

void Complain(const std::string& sentence) {
    std::fprintf(stderr, "OrbivueUploadPrepare: %s\n", sentence.c_str());
}

/** Shows the window until it is closed. */
class CUploadApp final : public wxApp {
  public:
    bool Initialize(int& argc, wxChar** argv) override {
        lng::SetLanguage(CSettings::Instance().language);
        if (!wxApp::Initialize(argc, argv)) return false;
        SetToolkitDirection();
        MakeToolkitAccessible();
        return true;
    }
    [[nodiscard]] wxLayoutDirection GetLayoutDirection() const override { return LayoutDirection(); }
    /** The toolkit's own reads options; there are none. */
    bool OnInit() override {
        wxInitAllImageHandlers();
        CUserPrompt::Install(std::make_unique<CWxUserPrompt>());
        return true;
    }
    int OnRun() override {
        const CResult<CUploadContent>& content = s_prepared->content;
        if (!content) {
            CUserPrompt::Instance().ShowMessage(
                lng::Text("The page could not be made ready for the upload.") + L"\n" +
                lng::Text(content.Error()));
            return kExitFailed;
        }
        CDialogAccess access;
        access.Register();
        CUploadDlg(nullptr, CRcloneSetup(), content.Value(), s_prepared->modelName).ShowModal();
        return kExitDone;
    }
    int OnExit() override {
        CUserPrompt::Install(nullptr);
        return wxApp::OnExit();
    }
};

/** False, after a sentence, for wrong arguments. */
bool Prepare(const std::vector<std::string>& arguments) {
    const CResult<CUploadArguments> read = ReadUploadArguments(arguments);
    if (!read) {
        Complain(lng::TextForTerminal(read.Error()));
        return false;
    }
    s_prepared = CPrepared{JoinUpload(read.Value()), read.Value().modelName};
    if (!s_prepared->content) Complain(lng::TextForTerminal(s_prepared->content.Error()));
    return true;
}

int ExitWithoutDisplay() {
    if (!s_prepared->content) return kExitFailed;
    Complain(lng::TextUtf8("there is no display to show a window on; the page is ready in %s",
                           {s_prepared->content.Value().folder}));
    return kExitNoDisplay;
}

}  // namespace

wxIMPLEMENT_APP_NO_MAIN(CUploadApp);

int main(int argc, char** argv) {
    const CUserEnvironment environment;
    (void)std::signal(SIGXFSZ, SIG_IGN);    // a file beyond the user's limit fails as on a full disk
    std_file_paths::SetAppName("Orbivue");  // whose settings and data are used
    lng::LoadSettingsAndTexts();
    if (!Prepare({argv + std::min(argc, 1), argv + argc})) return kExitBadUsage;
    wxDISABLE_ASSERTS_IN_RELEASE_BUILD();
    // The toolkit sees no argument: a model's name may look like one of its options, or GTK's.
    int count = 1;
    const wxLogNull quiet;
    if (!wxEntryStart(count, argv)) return ExitWithoutDisplay();
    const int code = wxTheApp->CallOnInit() ? wxTheApp->OnRun() : kExitFailed;
    wxTheApp->OnExit();
    wxEntryCleanup();
    return code;
}
