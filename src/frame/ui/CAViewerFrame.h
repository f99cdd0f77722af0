// SPDX-License-Identifier: MIT
#pragma once

#include <wx/aui/framemanager.h>
#include <wx/frame.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "frame/command_states.h"
#include "frame/ui/CRecentFileListMgr.h"
#include "session/CSessionFrame.h"
#include "session/CSessionListener.h"
#include "view/CKeyDownListener.h"
#include "view/CViewToolState.h"

class CAnimationBar;
class CFileCommands;
class CSceneStatusBar;
class CSession;
class CViewer3DSWindowHandler;
struct CSceneCameras;
struct CSceneSummary;
class wxAuiToolBar;

/** The main window: the view in its middle, the menus, the toolbar, the status bar, and the bar of an
 * animation. Every command, from wherever it is chosen, arrives at RunCommand. It shows what the session, which
 * it owns, has open. */
class CAViewerFrame final : public wxFrame,
                            private CKeyDownListener,
                            private CSessionFrame,
                            private CSessionListener {
  public:
    explicit CAViewerFrame(const wxString& title);
    ~CAViewerFrame() override;

    /** False when the display gave no OpenGL window; nothing else may be called then. */
    [[nodiscard]] bool HasView() const;
    /** Opens a file, or the first model of a folder, once the view can. failed, if there is one, is told why it
     * cannot be opened, beside what the window shows. */
    void OpenByPath(const std::wstring& path, std::function<void(const CError&)> failed = {});
    /** Puts what the next start shows again into the settings' store: the window's place and
     * the recent files. */
    void KeepState();
    /** Does what a command does; nothing for one that is disabled now. */
    void RunCommand(int id);
    /** True for a command that does something when it is enabled. */
    [[nodiscard]] static bool HasHandler(int id);

    [[nodiscard]] CViewer3DSWindowHandler& View() { return *m_view; }
    [[nodiscard]] CFileCommands& Files() { return *m_files; }
    [[nodiscard]] CSession& Session() { return *m_session; }
    [[nodiscard]] CRecentFileListMgr& RecentFiles() { return m_recent; }
    [[nodiscard]] CCommandState StateOfCommand(int id) const;

    // --- commands that are the frame's own ---------------------------------------------------------------
    void ToggleFullScreen();
    void ToggleToolBar();
    void TogglePlaying();
    /** The preset camera last chosen, with no rotation and no zoom. */
    void ResetView();
    void ShowNotes();
    void SetPovOptions();
    void ExportPov();
    /** Shows a command pressed; 0: none is. */
    void ShowRunning(int commandId);
    void DoGiveHelp(const wxString& text, bool show) override;

  private:
    static constexpr char kStateName[] = "WindowState";

    void MakePanes();
    void BindEvents();
    void BindKeys();
    void ApplySettings();
    [[nodiscard]] CFrameState State() const;
    /** What the empty view says: what to do, or why there is nothing to be seen. */
    void ShowHint(const std::wstring& text);
    void ShowCommandStates();
    [[nodiscard]] CSceneCameras SceneCameras() const;
    void FollowFullScreen();
    void ShowPanes();
    void OnClose(wxCloseEvent& event);

    void PlayAnimation(bool play);
    void ShowFrame(int frame);
    void ShowAnimation();
    void ShowDocument();
    void ShowContextMenu(wxPoint where);

    // --- what is told -----------------------------------------------------------------------------------
    void OnViewKeyDown(int keyCode) override;
    void OnViewLeftButtonDown() override {}
    void OnViewRightButtonDown() override;
    void ShowTitle(const std::wstring& title) override;
    void ShowMessage(const std::wstring& text) override;
    void Tell(const std::wstring& text) override;
    void BeginBusy() override;
    void EndBusy() override;
    void OnOpening() override;
    void AskForTurn() override;
    void CloseNow() override;
    void OnOpened(const COpenReport& report) override;
    void OnDocumentChanged() override;

    CIdleToolState m_tools;
    CFrameState m_state;  ///< without what the view shows; ask State()
    CRecentFileListMgr m_recent;
    std::wstring m_hint;
    std::unique_ptr<CViewer3DSWindowHandler> m_view;
    std::unique_ptr<CSession> m_session;
    std::unique_ptr<CFileCommands> m_files;
    std::vector<std::wstring> m_notes;
    std::function<void(const CError&)> m_openFailed;  ///< told of the next opening that fails
    bool m_closed = false;  ///< it lives on until the event loop is idle, and does nothing more

    wxAuiManager m_aui;
    wxMenuBar* m_menuBar = nullptr;
    wxAuiToolBar* m_toolBar = nullptr;
    CAnimationBar* m_animationBar = nullptr;
    CSceneStatusBar* m_statusBar = nullptr;
};
