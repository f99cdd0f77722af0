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
#include "frame/ui/CFileCommands.h"
#include "view/CKeyDownListener.h"
#include "view/CViewToolState.h"

class CAnimationBar;
class CSceneStatusBar;
class CViewer3DSWindowHandler;
class wxAuiToolBar;

/** The main window: the view in its middle, the menus, the toolbar, the status bar, and the bar of an
 * animation. Every command, from wherever it is chosen, arrives at RunCommand. */
class CAViewerFrame final : public wxFrame, private CKeyDownListener, private CFileCommandsClient {
  public:
    explicit CAViewerFrame(const wxString& title);
    ~CAViewerFrame() override;

    /** False when the display gave no OpenGL window; nothing else may be called then. */
    [[nodiscard]] bool HasView() const;
    /** Opens a file as the Open command does, once the view can. failed, if there is one, is told why it cannot be
     * opened, beside what the window shows. */
    void OpenByPath(const std::wstring& path, const std::function<void(const CError&)>& failed = {});
    /** Puts what the next start shows again into the settings' store: the window's place and
     * the recent files. */
    void KeepState();
    /** Does what a command does; nothing for one that is disabled now. */
    void RunCommand(int id);
    /** True for a command that does something when it is enabled. */
    [[nodiscard]] static bool HasHandler(int id);

    [[nodiscard]] CViewer3DSWindowHandler& View() { return *m_view; }
    [[nodiscard]] CFileCommands& Files() { return *m_files; }
    [[nodiscard]] CCommandState StateOfCommand(int id) const;

    // --- commands that are the frame's own ---------------------------------------------------------------
    void ToggleFullScreen();
    void ToggleToolBar();
    void TogglePlaying();
    /** The preset camera last chosen, with no rotation and no zoom. */
    void ResetView();
    void ShowNotes();
    void ExportPov();

  private:
    void MakePanes();
    void BindEvents();
    void ApplySettings();
    [[nodiscard]] CFrameState State() const;
    void ShowHint();
    void ShowCommandStates();
    void FollowFullScreen();
    void ShowPanes();
    void OnClose(wxCloseEvent& event);
    void EndCommand();
    void CloseWhereAsked();

    void PlayAnimation(bool play);
    void ShowFrame(int frame);

    // --- what is told -----------------------------------------------------------------------------------
    void OnViewKeyDown(int keyCode) override;
    void OnViewLeftButtonDown() override {}
    void OnViewRightButtonDown() override;
    void ShowTitle(const std::wstring& title) override;
    void ShowRunning(int commandId) override;
    void OnOpening() override;
    void OnOpened() override;
    void OnModelChanged() override;

    CIdleToolState m_tools;
    CFrameState m_state;  ///< without what the view shows; ask State()
    std::unique_ptr<CViewer3DSWindowHandler> m_view;
    std::unique_ptr<CFileCommands> m_files;
    std::vector<std::wstring> m_notes;
    bool m_closeLater = false;  ///< closing was asked for while the frame was in use
    bool m_menuIsOpen = false;
    bool m_closed = false;  ///< it lives on until the event loop is idle, and does nothing more

    wxAuiManager m_aui;
    wxMenuBar* m_menuBar = nullptr;
    wxAuiToolBar* m_toolBar = nullptr;
    CAnimationBar* m_animationBar = nullptr;
    CSceneStatusBar* m_statusBar = nullptr;
};
