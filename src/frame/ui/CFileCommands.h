// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "frame/ui/CRecentFileListMgr.h"
#include "session/folder_models.h"

class CViewer3DSWindowHandler;
class wxWindow;

/** The frame as the file commands see it. */
class CFileCommandsClient {
  public:
    virtual ~CFileCommandsClient() = default;
    virtual void ShowTitle(const std::wstring& title) = 0;
    /** A command is shown pressed from now on; 0: none is. */
    virtual void ShowRunning(int commandId) = 0;
    /** A model is being opened from now on; OnModelChanged follows. */
    virtual void OnOpening() = 0;
    /** A model was opened just now; it is seen from the ISO camera. */
    virtual void OnOpened() = 0;
    /** Another model is shown, or none, or another number of models lies beside it; or the
     * recent files changed. */
    virtual void OnModelChanged() = 0;
};

/** Opening, saving, deleting, and stepping from file to file. Opening is the one road by which a
 * model reaches the view, whoever asks. What fails to open is told by the title alone; other failures
 * by a message box. */
class CFileCommands {
  public:
    /** All must outlive it. */
    CFileCommands(wxWindow& parent, CViewer3DSWindowHandler& view, CFileCommandsClient& client);

    /** Opens a file by its extension, compared exactly: "obj" is converted, and neither its success nor its
     * failure changes the title. Under the wait cursor; the window repaints meanwhile. False when an
     * opening is under way. */
    bool OpenByPath(const std::wstring& path);
    void Open();
    /** Opens what was dropped on the window: a file, or the first model of a folder. */
    void OpenDropped(const std::wstring& path);
    /** Opens what was dropped last while another command was busy. */
    void OpenWhatWasDropped();
    /** Opens an entry of the recent files, or drops it when its file is gone. */
    void OpenRecent(int commandId);
    /** Reads the current file again and keeps the camera. */
    void Reload();
    void SaveAs();
    void CompressToZip();
    void DeleteFile();
    void Step(folder_models::EStep step);
    /** Does something with the model that is shown, which stays until the work has ended: no other one can be
     * opened meanwhile. The command is shown pressed. Nothing when an opening is under way. */
    void HoldModel(int command, const std::function<void()>& work);

    /** What the last opening was asked for, also when it failed; empty when there was none. */
    [[nodiscard]] const std::wstring& Path() const { return m_path; }
    [[nodiscard]] bool IsBusy() const { return m_busy; }
    /** The models in the current file's folder as counted by the last opening. */
    [[nodiscard]] unsigned FolderModels() const { return m_folderModels; }
    [[nodiscard]] CRecentFileListMgr& RecentFiles() { return m_recent; }

  private:
    struct CSaveDialog {
        int command;
        const char* title;
        const char* filter;
        const wchar_t* extension;
    };
    void AskAndSave(const CSaveDialog& dialog);
    void Save(const std::wstring& path);

    wxWindow& m_parent;
    CViewer3DSWindowHandler& m_view;
    CFileCommandsClient& m_client;
    CRecentFileListMgr m_recent;
    std::wstring m_path;
    std::wstring m_dropped;  ///< while busy
    unsigned m_folderModels = 0;
    bool m_busy = false;
};
