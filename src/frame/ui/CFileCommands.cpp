// SPDX-License-Identifier: MIT
#include "frame/ui/CFileCommands.h"

#include <string>
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "frame/command_ids.h"
#include "frame/preview/ui/C3DSFileDlgI.h"
#include "frame/save_name.h"
#include "model/save/picture_copies.h"
#include "script/CSceneScript.h"
#include "session/CSceneView.h"
#include "session/CSession.h"
#include "session/CShowState.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettings.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/CBXFileDialogI.h"
#include "widgets/ui/run_job.h"

namespace {

constexpr char kSaveEntry[] = "save_as";

void TellOfFailure(const std::wstring& what, const CError& why) {
    CUserPrompt::Instance().ShowMessage(what + L"\n" + lng::Text(why));
}

/** What the view clears to. */
CVec3 BackgroundOf(const CScriptScene* scene) {
    if (scene && scene->background) return *scene->background;
    return CShowState::From(CSettings::Instance()).background;
}

}  // namespace

CFileCommands::CFileCommands(wxWindow& parent, CSceneView& view, CSession& session, CShowRunning showRunning)
    : m_parent(parent), m_view(view), m_session(session), m_showRunning(std::move(showRunning)) {}

void CFileCommands::HoldModel(int command, const std::function<void()>& work) {
    if (m_session.IsBusy()) return;
    const CTurns::CHold hold(m_session.Turns());
    ShowRunning(command);
    work();
    ShowRunning(0);
}

void CFileCommands::Open() {
    const CVec3 background = BackgroundOf(m_session.ScriptScene());
    C3DSFileDlgI::SetBackgroundColor(background.x, background.y, background.z);
    std::wstring path;
    {
        const CTurns::CHold hold(m_session.Turns());
        path = C3DSFileDlgI::LaunchDialog(&m_parent, CLocalRegStore::GetString("3dsFileDialog", "Path", {}));
    }
    if (!path.empty()) m_session.Open(COpenRequest::OfFile(path));
}

void CFileCommands::SaveAs() {
    AskAndSave({kCmdSaveAs, lng::Mark("Save As"), lng::Mark("3ds and zip files(*.3ds;*.zip)|*.3ds;*.zip||"),
                L"3ds"});
}

void CFileCommands::CompressToZip() {
    AskAndSave(
        {kCmdCompressToZip, lng::Mark("Save As Zip archive"), lng::Mark("zip files(*.zip)|*.zip||"), L"zip"});
}

void CFileCommands::AskAndSave(const CSaveDialog& dialog) {
    HoldModel(dialog.command, [&] {
        if (!m_session.Document().isOpen) return;
        const std::wstring path = AskForTarget(dialog);
        if (!path.empty()) Save(path);
    });
}

/** Asks until the name is that of a file that can be written, or the user cancels. */
std::wstring CFileCommands::AskForTarget(const CSaveDialog& dialog) {
    const CRegEntryGuard entry(kSaveEntry);
    const std::wstring& current = m_session.Document().path;
    std::wstring folder;  // the one remembered, at first the file's own
    std::wstring name = file_util_ex::SetFileExt(file_util_ex::GetFileName(current), dialog.extension);
    while (true) {
        std::wstring path = CBXFileDialogI::LaunchSaveDialog(
            &m_parent, dialog.extension, lng::Text(dialog.filter), lng::Text(dialog.title), folder, name);
        if (path.empty() || IsNameToSave(path)) return path;
        CUserPrompt::Instance().ShowMessage(
            lng::Text("A scene is saved as a .3ds or a .zip file, and %s would be neither.",
                      file_util_ex::GetFileName(path)));
        folder = file_util_ex::GetFilePath(path);
        name = file_util_ex::SetFileExt(file_util_ex::GetFileName(path), dialog.extension);
    }
}

void CFileCommands::Save(const std::wstring& path) {
    RepaintWindows();  // or the dialog stays visible over the view until saving has ended
    const CStatus saved = m_session.Save(path);
    if (!saved)
        TellOfFailure(lng::Text("The file could not be saved."), saved.Error());
    else if (!IsZipName(path))
        OfferPictures(path);
}

void CFileCommands::OfferPictures(const std::wstring& path) {
    const std::string target = file_util_ex::ConvertToUTF8(path);
    const CImageDataTextVec pictures = [&] {
        const CBusyCursor cursor;
        return picture_copies::MissingAt(m_view.Get3dsFile(), target);
    }();
    if (pictures.empty()) return;
    if (!CUserPrompt::Instance().AskYesNo(
            lng::Text("Pictures of the model (%s) are not found from there. Copy them beside the saved file?",
                      lng::Number(pictures.size()))))
        return;
    std::wstring refused;
    for (const std::string& name : picture_copies::CopyInto(file_util_ex::GetFilePath(target), pictures))
        refused += L"\n" + lng::ConvertFromUTF8(name);
    if (!refused.empty())
        CUserPrompt::Instance().ShowMessage(
            lng::Text("These pictures could not be copied, or other files have their names:") + refused);
}

void CFileCommands::DeleteFile() {
    HoldModel(kCmdDeleteFile, [this] {
        if (!m_session.Document().isOpen || !m_session.MayLoseEdits()) return;
        const std::wstring name = file_util_ex::GetFileName(m_session.Document().path);
        if (!CUserPrompt::Instance().AskYesNo(lng::Text("Are you sure do you want to delete %s file?", name)))
            return;
        const CStatus deleted = m_session.DeleteFile();
        if (!deleted) TellOfFailure(lng::Text("The file %s could not be deleted.", name), deleted.Error());
    });
}
