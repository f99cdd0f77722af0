// SPDX-License-Identifier: MIT
#include "windows/window_list.h"

#include <wx/aui/auibar.h>

#include <filesystem>

#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "export/pov/ui/CPovExportDialog.h"
#include "files/file_util_ex.h"
#include "frame/command_ids.h"
#include "frame/dialogs/ui/CShortcutsDlg.h"
#include "frame/materials/ui/CReplaceDlg.h"
#include "frame/materials/ui/wxColourCombo.h"
#include "frame/ui/CAViewerFrame.h"
#include "frame/ui/CSceneNotesDlg.h"
#include "modeldb/transfer/ui/CIncorrectVersionDlg.h"
#include "modeldb/upload/ui/COutsidePicturesDlg.h"
#include "modeldb/upload/ui/CUploadDialog.h"
#include "programs/upload_prepare/ui/CUploadDlg.h"
#include "session/CSession.h"
#include "settings/CSettings.h"
#include "update/check_for_update.h"
#include "update/ui/CUpdateBar.h"
#include "update/ui/CUpdateNewsDlg.h"
#include "update/ui/CUpdateProgressDlg.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CUserPrompt.h"
#include "windows/CStage.h"

namespace {

/** What a command opens as a modal dialog. */
struct CDialogOfCommand {
    const char* name;
    int command;
};

constexpr CDialogOfCommand kWithoutModel[] = {
    {"open", kCmdOpen},
    {"pov-settings", kCmdPovSettings},
    {"html-settings", kCmdHtmlSettings},
    {"settings", kCmdSettings},
    {"about", kCmdAbout},
};
constexpr CDialogOfCommand kWithModel[] = {
    {"save-as", kCmdSaveAs},         {"save-zip", kCmdCompressToZip},   {"save-picture", kCmdScreenShot},
    {"save-pov", kCmdExportPov},     {"save-html", kCmdExportHtml},     {"save-gltf", kCmdExportGltf},
    {"delete-file", kCmdDeleteFile}, {"replace-file", kCmdToolReplace},
};
constexpr const char* kMenus[] = {"menu-file", "menu-view", "menu-export", "menu-tools", "menu-help"};

void RunAll(CStage& stage, std::span<const CDialogOfCommand> dialogs) {
    for (const CDialogOfCommand& dialog : dialogs)
        stage.Modal(dialog.name, [&] { stage.Frame().RunCommand(dialog.command); });
}

/** Choosing no language sets English, and a message says so; both are looked at. */
void ShowLanguages(CStage& stage) {
    CSettings& settings = CSettings::Instance();
    const std::wstring language = settings.language;
    stage.Modal("language", [&] { stage.Frame().RunCommand(kCmdSelectLanguage); });
    settings.language = language;
    stage.Modal("language-restart", [] {
        CUserPrompt::Instance().ShowMessage(
            lng::Text("You must restart Orbivue for this change to take effect."));
    });
}

void ShowPrompts(CStage& stage) {
    stage.Modal("save-edits", [] {
        (void)CUserPrompt::Instance().AskSave(
            lng::Text("The edits of %s are not saved. Save them to a script?", L"chess.3ds"));
    });
    stage.Modal("no-manual", [] {
        CUserPrompt::Instance().ShowMessage(lng::Text("This page of the manual is not installed:") +
                                            L"\n/usr/share/orbivue/manual/index.html");
    });
    stage.Modal("no-server",
                [] { CUserPrompt::Instance().ShowWarning(lng::Text("Unable to connect to the server.")); });
}

void ShowUpdates(CStage& stage) {
    const CAppcastItem item{
        "2.1", L"2.1", {}, {""}, "https://orbivue.example/", L"• One thing\n• Another thing"};
    const CUpdateOutcome outcome{EUpdateOutcome::News, item, {}};
    stage.Modal("update-news", [&] {
        CUpdateNewsDlg(&stage.Frame(), SentenceOf(outcome, L"1.9.5", false), item).ShowModal();
    });
    stage.Modal("update-progress", [&] {
        CUpdateProgressDlg(&stage.Frame(), [](CJobProgress& progress) {
            while (!progress.IsCancelled()) wxMilliSleep(5);
        }).ShowModal();
    });
    for (const auto& [name, kind] : {std::pair("update-none", EUpdateOutcome::UpToDate),
                                     std::pair("update-no-feed", EUpdateOutcome::NoFeed)})
        stage.Modal(name, [&, kind = kind] {
            CUserPrompt::Instance().ShowMessage(SentenceOf({kind, {}, {}}, L"1.9.5", false));
        });
    auto* bar = new CUpdateBar(stage.Frame(), L"2.1", {[] {}, [] {}});
    stage.Look("update-bar");
    bar->Leave();
    CStage::Wait(0);
}

/** The windows of the helper that uploads to a drive: before it knows one, and the questions of a real upload. */
void ShowDrive(CStage& stage, const std::string& folder) {
    CUploadContent content;
    content.folder = folder;
    content.files = {{"index.html", 12'345}, {"model/model.glb", 2'345'678}, {"model/viewer.js", 345'678}};
    content.bytes = 2'703'701;
    content.outside = {{"/home/somebody/pictures/wood.png"}};
    stage.Show("drive-looking",
               new CUploadDlg(&stage.Frame(), {.program = "/no/such/rclone"}, content, "chess.3ds"));
    CRcloneSetup setup;
    setup.remoteType = "alias";
    setup.moreArguments = {"--config", folder + "/rclone.conf"};
    auto* ready = new CUploadDlg(&stage.Frame(), setup, content, "chess.3ds");
    for (int i = 0; i < 100 && ready->Upload().State() == CUpload::EState::Looking; ++i) CStage::Wait(50);
    stage.Show("drive-ready", ready);
}

void ShowTransfers(CStage& stage) {
    stage.Show("wrong-version", new CIncorrectVersionDlg(&stage.Frame()));
    stage.Show("outside-pictures",
               new COutsidePicturesDlg(&stage.Frame(), {"/home/somebody/pictures/wood.png"}));
    static unsigned char bytes[] = {0};
    static const CImageDataTextVec none;
    auto* upload = new CUploadDialog(&stage.Frame(), L"/models/chess.3ds", bytes, 1, none);
    upload->wxDialog::Show(true);  // its own Show would begin to upload
    stage.Show("upload", upload);
}

void ShowColours(CStage& stage, wxWindow& window) {
    for (wxWindow* child : window.GetChildren()) {
        if (auto* combo = dynamic_cast<wxColourCombo*>(child)) {
            combo->Popup();
            stage.Look("colours");
            combo->Dismiss();
            return;
        }
        ShowColours(stage, *child);
    }
}

void ShowBars(CStage& stage) {
    CAViewerFrame& frame = stage.Frame();
    stage.Look("frame-model");
    if (stage.Wants("colours")) ShowColours(stage, frame);
    if (stage.Wants("model-list")) {
        frame.RunCommand(kCmdShowModelList);
        CStage::Wait(1500);  // for its pictures
        stage.Look("model-list");
        frame.RunCommand(kCmdShowModelList);
    }
    if (stage.Wants("browser")) {
        frame.RunCommand(kCmdDownload);
        CStage::Wait(300);
        stage.Look("browser");
        frame.RunCommand(kCmdDownload);
    }
}

void ShowSceneDialogs(CStage& stage) {
    CAViewerFrame& frame = stage.Frame();
    C3dsDisplayWrap& engine = frame.View().GetEngine();
    stage.Show("notes",
               new CSceneNotesDlg(&frame, {L"textures/wood.png: " + lng::Text("Texture not found")}));
    stage.Show("replace", new CReplaceDlg(&frame, L"chess.3ds", *engine.Prepared(), {}));
    const CPovSource source{*engine.Prepared(), engine.GetTextures(), frame.View().SeenView()};
    stage.Show("pov-progress", new CPovExportDialog(&frame, {}, source));
}

}  // namespace

void ShowAllWindows(CStage& stage, const std::string& folder) {
    CAViewerFrame& frame = stage.Frame();
    stage.Look("frame-empty");
    for (std::size_t i = 0; i < std::size(kMenus); ++i) stage.Menu(kMenus[i], i);
    RunAll(stage, kWithoutModel);
    ShowLanguages(stage);
    stage.Show("shortcuts", new CShortcutsDlg(&frame));
    ShowPrompts(stage);
    ShowUpdates(stage);
    ShowDrive(stage, folder);
    ShowTransfers(stage);
    frame.Session().Open(COpenRequest::OfFile(file_util_ex::ConvertFromUTF8W(folder + "/chess.3ds")));
    CStage::Wait(300);
    ShowBars(stage);
    RunAll(stage, kWithModel);
    ShowSceneDialogs(stage);
    stage.Modal("context-menu", [&] {
        wxContextMenuEvent event(wxEVT_CONTEXT_MENU);
        frame.View().GetCanvas()->GetWindow()->GetEventHandler()->ProcessEvent(event);
    });
}
