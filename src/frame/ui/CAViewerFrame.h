// SPDX-License-Identifier: MIT
#pragma once

#include <wx/aui/framemanager.h>
#include <wx/frame.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "frame/command_states.h"
#include "frame/materials/CMaterialTool.h"
#include "frame/materials/ui/wxColorPopupListener.h"
#include "frame/slideshow/ui/CSlideShowFrame.h"
#include "frame/ui/CRecentFileListMgr.h"
#include "modeldb/ui/CModelsDlgHost.h"
#include "session/CSessionFrame.h"
#include "session/CSessionListener.h"
#include "session/folder_models.h"
#include "view/CKeyDownListener.h"
#include "widgets/access/ui/CDialogAccess.h"

class CAnimationBar;
class CFileCommands;
class CMaterialBar;
class CMaterialCommands;
class CModelListControl;
class CModelsDlg;
class CSceneStatusBar;
class CSession;
class CSlideShow;
class CViewer3DSWindowHandler;
struct CSceneCameras;
struct CSceneSummary;
class wxAuiToolBar;

/** The main window: the view in its middle, the menus, the toolbars, the status bar, and the animation
 * bar. RunCommand runs every command, from menus, tools and keys. It owns the session and shows the
 * session's document. */
class CAViewerFrame final : public wxFrame,
                            private wxColorPopupListener,
                            private CKeyDownListener,
                            private CSessionFrame,
                            private CSessionListener,
                            private CSlideShowFrame,
                            private CModelsDlgHost {
  public:
    explicit CAViewerFrame(const wxString& title);
    ~CAViewerFrame() override;

    /** False when the display has no OpenGL window to give; then no other function may be called. */
    [[nodiscard]] bool HasView() const;
    /** Opens a file, or the first model of a folder, as soon as the view can. If that fails, failed, unless
     * empty, is called with the reason, in addition to what the window shows. */
    void OpenByPath(const std::wstring& path, std::function<void(const CError&)> failed = {});
    /** Puts the window's place and the recent files into the settings' store for the next start. */
    void KeepState();
    /** Opens the next or the previous model, as the commands, the keys and a slideshow do. Its command is marked
     * meanwhile. */
    void StepModel(folder_models::EStep step);
    /** Runs a command; does nothing if it is disabled. */
    void RunCommand(int id);
    /** True for a command that is implemented. */
    [[nodiscard]] static bool HasHandler(int id);

    [[nodiscard]] CViewer3DSWindowHandler& View() { return *m_view; }
    [[nodiscard]] CFileCommands& Files() { return *m_files; }
    [[nodiscard]] CMaterialCommands& Materials() { return *m_materials; }
    [[nodiscard]] CSlideShow& SlideShow() { return *m_slideShow; }
    [[nodiscard]] CSession& Session() { return *m_session; }
    [[nodiscard]] CModelListControl& ModelList() { return *m_modelList; }
    /** The browser of the library; null before it was shown first. */
    [[nodiscard]] CModelsDlg* Browser() { return m_browser; }
    [[nodiscard]] CRecentFileListMgr& RecentFiles() { return m_recent; }
    [[nodiscard]] CCommandState StateOfCommand(int id) const;

    // --- commands that are the frame's own ---------------------------------------------------------------
    void ToggleFullScreen();
    void ToggleToolBar();
    void ToggleMaterialBar();
    void ToggleModelList();
    /** Shows or hides the browser of the library of models; connects when it is shown first. */
    void ToggleBrowser();
    void UploadModel();
    void ClearCache();
    void TogglePlaying();
    /** Looks through the preset camera last chosen, without rotation and zoom. */
    void ResetView();
    void ShowNotes();
    void SetPovOptions();
    void ExportPov();
    void ExportGoogleDrive();
    void ExportGltf();
    void SaveScreenshot();
    void SetHtmlOptions();
    void ExportHtml();
    /** Shows the tool of a command pressed; 0 for none. */
    void ShowRunning(int commandId);
    void DoGiveHelp(const wxString& text, bool show) override;

  private:
    static constexpr char kStateName[] = "WindowState";
    static constexpr char kSlideShowPane[] = "slideshow";
    static constexpr char kBrowserPane[] = "3ds Files Download";

    void MakePanes();
    void MakeMaterialPane();
    void MakeSlideShow();
    [[nodiscard]] bool IsKeyForView(const wxKeyEvent& event) const;
    void MakeModelList();
    void BindEvents();
    void BindKeys();
    void ApplySettings();
    [[nodiscard]] CFrameState State() const;
    /** Shows a text in the empty view: what to do, or why nothing is shown. */
    void ShowHint(const std::wstring& text);
    /** Tells screen readers what the view shows. */
    void NameView(const CSceneSummary& summary);
    void ShowCommandStates();
    [[nodiscard]] CSceneCameras SceneCameras() const;
    void FollowFullScreen();
    void ShowPanes();
    /** Moves the keyboard from one part of the window to the next one, or the one before. */
    void StepPane(bool back);
    void OnClose(wxCloseEvent& event);

    void PlayAnimation(bool play);
    void ShowFrame(int frame);
    void ShowAnimation();
    void ShowDocument();
    void ShowContextMenu(wxPoint where);
    void StepSoon(folder_models::EStep step);

    // --- what is told -----------------------------------------------------------------------------------
    void OnViewKeyDown(int keyCode) override;
    void OnViewLeftButtonDown() override;
    void OnViewRightButtonDown() override;
    void ShowTitle(const std::wstring& title) override;
    void ShowMessage(const std::wstring& text) override;
    void Tell(const std::wstring& text) override;
    void OnColorChosen(const wxColour& color) override;
    void OnColorPopupClosed() override;
    [[nodiscard]] bool MayLoseEdits() override;
    void BeginBusy() override;
    void EndBusy() override;
    [[nodiscard]] bool IsFullScreenShown() const override;
    void SetFullScreen(bool fullScreen) override;
    void OnOpening() override;
    void AskForTurn() override;
    void CloseNow() override;
    void OnOpened(const COpenReport& report) override;
    void OnDocumentChanged() override;

    // --- the slideshow ------------------------------------------------------------------------------------
    void TellShow(const COpenReport& report);
    void ShowNextModel() override;
    [[nodiscard]] bool IsShowHindered() const override;
    [[nodiscard]] bool ListHoldsStep() const override;
    [[nodiscard]] bool HasUnsavedEdits() const override;
    void CancelTool() override;
    void ShowChanged() override;
    void KeepPicture(EPicture how) override;
    [[nodiscard]] std::wstring Caption() const override;
    void SetCaption(const std::wstring& text) override;
    [[nodiscard]] bool FillsScreen() const override;
    void FillScreen(bool fill) override;
    void SayOfShow(const std::wstring& text) override;
    void TellOfShow(const std::wstring& text) override;

    // --- the library of models ------------------------------------------------------------------------------
    void MakeBrowser();
    /** True when the browser filled the window and does so no longer; the caller has the panes laid out. */
    bool RestoreBrowser();
    void OpenDownloaded(CModelData& model) override;
    void CheckBrowserCommand(bool isShown) override;
    void TellOfTransfer(const std::wstring& text) override;
    void LeaveBrowser() override;

    CDialogAccess m_dialogs;
    CMaterialTool m_tools;
    CFrameState m_state;  ///< without `shown`, which State() adds
    CRecentFileListMgr m_recent;
    std::wstring m_hint;
    std::unique_ptr<CViewer3DSWindowHandler> m_view;
    std::unique_ptr<CSession> m_session;
    std::unique_ptr<CFileCommands> m_files;
    std::unique_ptr<CMaterialCommands> m_materials;
    std::unique_ptr<CSlideShow> m_slideShow;
    std::unique_ptr<CModelListControl> m_modelList;
    std::vector<std::wstring> m_notes;
    std::optional<folder_models::EStep> m_wantedStep;  ///< by a key
    std::function<void(const CError&)> m_openFailed;   ///< called if the next opening fails
    bool m_closed = false;  ///< the window object lives until the event loop is idle, but ignores events

    wxAuiManager m_aui;
    wxMenuBar* m_menuBar = nullptr;
    wxAuiToolBar* m_toolBar = nullptr;
    CMaterialBar* m_materialBar = nullptr;
    CAnimationBar* m_animationBar = nullptr;
    CSceneStatusBar* m_statusBar = nullptr;
    CModelsDlg* m_browser = nullptr;  ///< made when it is shown first
};
