// SPDX-License-Identifier: MIT
#include "frame/ui/CFileCommands.h"

#include <string>
#include <utility>

#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "files/file_util_ex.h"
#include "frame/command_ids.h"
#include "frame/preview/ui/C3DSFileDlgI.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettings.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/CBXFileDialogI.h"
#include "widgets/ui/run_job.h"

namespace {

constexpr wchar_t kTitle[] = L"Orbivue";
constexpr char kSaveEntry[] = "save_as";

/** True as long as it lives. */
class CFlagGuard {
  public:
    explicit CFlagGuard(bool& flag) : m_flag(flag) { m_flag = true; }
    CFlagGuard(const CFlagGuard&) = delete;
    CFlagGuard& operator=(const CFlagGuard&) = delete;
    ~CFlagGuard() { m_flag = false; }

  private:
    bool& m_flag;
};

/** Shows a command pressed as long as it lives. */
class CRunningCommand {
  public:
    CRunningCommand(CFileCommandsClient& client, int command) : m_client(client) {
        client.ShowRunning(command);
    }
    CRunningCommand(const CRunningCommand&) = delete;
    CRunningCommand& operator=(const CRunningCommand&) = delete;
    ~CRunningCommand() { m_client.ShowRunning(0); }

  private:
    CFileCommandsClient& m_client;
};

void TellOfFailure(const std::wstring& what, const CError& why) {
    CUserPrompt::Instance().ShowMessage(what + L"\n" + lng::Text(why));
}

}  // namespace

CFileCommands::CFileCommands(wxWindow& parent, CViewer3DSWindowHandler& view, CFileCommandsClient& client)
    : m_parent(parent), m_view(view), m_client(client) {}

bool CFileCommands::OpenByPath(const std::wstring& path) {
    if (m_busy) return false;
    const CBusyCursor cursor;
    const bool shownAlready = path == m_view.GetPath();
    bool opened = false;
    {
        const CFlagGuard busy(m_busy);
        m_client.OnOpening();
        opened = m_view.OpenModel(path.c_str());
    }
    if (file_util_ex::GetFileExt(path) != L"obj") {
        std::wstring title = std::wstring(kTitle) + L" - " + path;
        if (!opened) title += L" - " + lng::Text("File open failed");
        m_client.ShowTitle(title);
    }
    m_path = path;
    m_folderModels = static_cast<unsigned>(folder_models::ListBeside(path).size());
    if (opened) m_recent.AddToRecentFileList(path);
    if (opened && !shownAlready) m_client.OnOpened();
    m_client.OnModelChanged();
    return opened;
}

void CFileCommands::Open() {
    const CSettings& settings = CSettings::Instance();
    const auto channel = [](unsigned value) { return static_cast<float>(value) / 255.0f; };
    C3DSFileDlgI::SetBackgroundColor(channel(settings.bkColorR), channel(settings.bkColorG),
                                     channel(settings.bkColorB));
    const std::wstring folder = CLocalRegStore::GetString("3dsFileDialog", "Path", {});
    std::wstring path;
    {
        const CFlagGuard busy(m_busy);
        path = C3DSFileDlgI::LaunchDialog(&m_parent, folder);
    }
    if (!path.empty()) OpenByPath(path);
}

void CFileCommands::OpenWhatWasDropped() {
    if (!m_dropped.empty()) OpenDropped(std::exchange(m_dropped, {}));
}

void CFileCommands::OpenDropped(const std::wstring& path) {
    if (m_busy) {
        m_dropped = path;
        return;
    }
    if (!file_util_ex::DoesFolderExist(path)) {
        OpenByPath(path);
        return;
    }
    const std::vector<std::wstring> models = folder_models::ListInside(path);
    if (!models.empty()) {
        OpenByPath(models.front());
        return;
    }
    const CFlagGuard busy(m_busy);
    CUserPrompt::Instance().ShowMessage(lng::Text("There is no model in the folder %s.", path));
}

void CFileCommands::OpenRecent(int commandId) {
    const auto index = m_recent.GetIndexByResource(commandId);
    if (!index) return;
    const std::wstring path = m_recent.GetNameByIndex(*index);
    if (file_util_ex::DoesFileExist(path)) {
        OpenByPath(path);
        return;
    }
    // What is shown stays: a stale entry is no reason to lose it.
    m_recent.RemoveIndex(*index);
    m_client.ShowTitle(std::wstring(kTitle) + L" - " + path + L" - " + lng::Text("File open failed"));
    m_client.OnModelChanged();
}

void CFileCommands::Reload() {
    if (m_busy || m_view.GetPath().empty()) return;
    const CFlagGuard busy(m_busy);
    const CStatus read = [this] {
        const CBusyCursor cursor;
        return m_view.Reload();
    }();
    m_client.OnModelChanged();
    if (!read)
        TellOfFailure(lng::Text("The file %s cannot be read again.", m_view.GetFileName()), read.Error());
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
    const CRunningCommand running(m_client, dialog.command);
    const std::wstring name = m_view.GetFileName();
    if (name.empty() || m_busy) return;
    const CFlagGuard busy(m_busy);
    const CRegEntryGuard entry(kSaveEntry);
    const bool first = CLocalRegStore::GetString(kSaveEntry, "Path", {}).empty();
    const std::wstring path = CBXFileDialogI::LaunchSaveDialog(
        &m_parent, dialog.extension, lng::Text(dialog.filter), lng::Text(dialog.title),
        first ? file_util_ex::GetFilePath(m_view.GetPath()) : std::wstring(),
        file_util_ex::SetFileExt(name, dialog.extension));
    if (!path.empty()) Save(path);
}

void CFileCommands::Save(const std::wstring& path) {
    RepaintWindows();  // or the dialog's picture stays over the view until the end
    const CStatus saved = [&] {
        const CBusyCursor cursor;
        return m_view.SaveToPath(path);
    }();
    m_folderModels = static_cast<unsigned>(folder_models::ListBeside(m_path).size());
    m_client.OnModelChanged();
    if (!saved) TellOfFailure(lng::Text("The file could not be saved."), saved.Error());
}

void CFileCommands::DeleteFile() {
    const std::wstring path = m_view.GetPath();
    if (path.empty() || m_busy) return;
    const std::wstring name = file_util_ex::GetFileName(path);
    const CFlagGuard busy(m_busy);
    if (!CUserPrompt::Instance().AskYesNo(lng::Text("Are you sure do you want to delete %s file?", name)))
        return;
    m_view.CloseModel();
    const CStatus deleted = file_util_ex::TryDeleteFile(file_util_ex::ConvertToUTF8(path));
    if (deleted) m_recent.Remove(path);
    m_path.clear();
    m_folderModels = 0;
    m_client.ShowTitle(kTitle);
    m_client.OnModelChanged();
    if (!deleted) TellOfFailure(lng::Text("The file %s could not be deleted.", name), deleted.Error());
}

void CFileCommands::Step(folder_models::EStep step) {
    const CRunningCommand running(m_client,
                                  step == folder_models::EStep::Next ? kCmdNextFile : kCmdPreviousFile);
    const std::wstring path = folder_models::Neighbour(folder_models::ListBeside(m_path), m_path, step);
    if (!path.empty()) OpenByPath(path);
}

void CFileCommands::HoldModel(int command, const std::function<void()>& work) {
    if (m_busy) return;
    const CFlagGuard busy(m_busy);
    const CRunningCommand running(m_client, command);
    work();
}
