// SPDX-License-Identifier: MIT
#include "frame/ui/CAViewerFrame.h"

#include <wx/anybutton.h>
#include <wx/dnd.h>
#include <wx/iconbndl.h>
#include <wx/menu.h>

#include <cmath>
#include <functional>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "export/drive/ui/drive_export_command.h"
#include "export/gltf/ui/gltf_export_command.h"
#include "export/picture/ui/screenshot_command.h"
#include "export/pov/ui/CPOVRaySettingsDlg.h"
#include "export/pov/ui/pov_export_command.h"
#include "export/webgl/CHtmlSettings.h"
#include "export/webgl/ui/CHtmlSettingsDlg.h"
#include "export/webgl/ui/html_export_command.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "frame/materials/ui/CMaterialBar.h"
#include "frame/materials/ui/CMaterialCommands.h"
#include "frame/model_list/ui/CModelListControl.h"
#include "frame/slideshow/ui/CSlideShow.h"
#include "frame/ui/CAnimationBar.h"
#include "frame/ui/CFileCommands.h"
#include "frame/ui/CSceneNotesDlg.h"
#include "frame/ui/CSceneStatusBar.h"
#include "frame/ui/command_handlers.h"
#include "frame/ui/command_menus.h"
#include "frame/ui/command_tool_bar.h"
#include "frame/ui/full_screen_watch.h"
#include "modeldb/ui/CModelsDlg.h"
#include "script/CSceneScript.h"
#include "session/CSession.h"
#include "settings/CSettings.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "view/ui/text_picture.h"
#include "widgets/access/ui/focus.h"
#include "widgets/ui/wx_window_state.h"

namespace {

/** Passes the first of the dropped paths on. */
class CModelDropTarget final : public wxFileDropTarget {
  public:
    explicit CModelDropTarget(std::function<void(std::wstring)> drop) : m_drop(std::move(drop)) {}
    bool OnDropFiles(wxCoord, wxCoord, const wxArrayString& paths) override {
        if (paths.empty()) return false;
        m_drop(paths.front().ToStdWstring());
        return true;
    }

  private:
    std::function<void(std::wstring)> m_drop;
};

}  // namespace

CAViewerFrame::CAViewerFrame(const wxString& title)
    : wxFrame(nullptr, wxID_ANY, title, wxDefaultPosition, wxWindow::FromDIP(wxSize(1024, 768), nullptr)),
      m_hint(lng::Text("Open a model: Ctrl+O or drop one here")),
      m_view(std::make_unique<CViewer3DSWindowHandler>(this, &m_tools)),
      m_session(std::make_unique<CSession>(*m_view, static_cast<CSessionFrame&>(*this), m_recent)),
      m_files(std::make_unique<CFileCommands>(*this, *m_view, *m_session,
                                              [this](int command) { ShowRunning(command); })),
      m_materials(std::make_unique<CMaterialCommands>(
          *this, m_tools, *m_view, *m_session,
          CMaterialCommands::CHost{.showMessage = [this](const std::wstring& text) { ShowMessage(text); },
                                   .showStates = [this] { ShowCommandStates(); },
                                   .stopSlideShow = [this] { m_slideShow->OnTakenInHand(); }})) {
    if (!HasView()) return;
    m_dialogs.Register();
    m_session->AddListener(*this);
    const wxString icon = std_file_paths::GetImgPath(L"main.ico");
    SetIcons(wxIconBundle(icon, wxBITMAP_TYPE_ICO));
    m_view->SetOwner(this);
    MakePanes();
    BindEvents();
    BindKeys();
    ApplySettings();
    m_recent.LoadStdProfileSettings();
    ShowDocument();
    m_aui.Update();
    if (!wx_window_state::LoadState(this, kStateName)) wx_window_state::MaximizeFrame(this);
    m_view->GetCanvas()->GetWindow()->SetFocus();
}

CAViewerFrame::~CAViewerFrame() {
    m_aui.UnInit();
    if (m_browser) m_browser->Destroy();
    m_slideShow.reset();
    m_materials.reset();
    m_modelList.reset();
    m_files.reset();
    m_session.reset();
    m_view.reset();  // its canvas is a window of this one
}

bool CAViewerFrame::HasView() const {
    return m_view->GetCanvas() != nullptr;
}

void CAViewerFrame::BindEvents() {
    // Later, because a screen reader that chooses a command waits until it has been taken, and would not see its dialog.
    Bind(wxEVT_MENU, [this](wxCommandEvent& event) {
        CallAfter([this, id = CommandOfWidgetId(event.GetId())] {
            RunCommand(id);
            if (!m_closed) TellFocusAgain(*this);
        });
    });
    Bind(wxEVT_CLOSE_WINDOW, &CAViewerFrame::OnClose, this);
    Bind(wxEVT_DPI_CHANGED, [this](wxDPIChangedEvent& event) {
        ShowHint(m_hint);
        event.Skip();
    });
    WatchFullScreen(*this, [this] {
        if (!m_closed && IsFullScreen() != m_state.isFullScreen) FollowFullScreen();
    });
    m_view->SetProgressListener([this](const CJobProgress& progress, long elapsedMs) {
        constexpr long kShowAfterMs = 500;
        if (elapsedMs >= kShowAfterMs) m_statusBar->ShowProgress(ProgressOf(progress));
    });
    m_view->SetFrameListener(
        [this] { m_animationBar->ShowFrame(static_cast<int>(std::lround(m_view->GetEngine().GetFrame()))); });
    m_view->SetNodeDeleter([this](const char* node) { m_session->DeleteNode(node); });
    // Later, because the program that the file was dragged from waits for an answer.
    const auto drop = [this](std::wstring path) {
        CallAfter([this, path = std::move(path)] {
            if (!m_closed) m_session->OpenFileOrFolder(path);
        });
    };
    SetDropTarget(new CModelDropTarget(drop));
    m_view->GetCanvas()->GetWindow()->SetDropTarget(new CModelDropTarget(drop));
}

/** The view's keys work wherever in the main window the focus is, except in text fields. The keys for a
 * context menu open the view's. The question mark stands above another key on many keyboards, and so is not found in
 * a table of accelerators. */
void CAViewerFrame::BindKeys() {
    wxWindow* canvas = m_view->GetCanvas()->GetWindow();
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (IsKeyForView(event))
            OnViewKeyDown(event.GetKeyCode());
        else if (event.GetUnicodeKey() == '?' && event.ControlDown())
            RunCommand(kCmdShortcuts);
        else if (event.GetKeyCode() == WXK_F6 && (event.GetModifiers() & ~wxMOD_SHIFT) == 0)
            StepPane(event.ShiftDown());
        else
            event.Skip();
    });
    canvas->Bind(wxEVT_CONTEXT_MENU, [this, canvas](wxContextMenuEvent& event) {
        // An event with a position comes from the mouse, and the view reports the mouse's button itself.
        if (event.GetPosition() != wxDefaultPosition) return event.Skip();
        const wxSize size = canvas->GetClientSize();
        ShowContextMenu(ScreenToClient(canvas->ClientToScreen(wxPoint(size.x / 2, size.y / 2))));
    });
}

/** True for a key of the view that goes to another part of the window, and that this part has no use for. */
bool CAViewerFrame::IsKeyForView(const wxKeyEvent& event) const {
    const int key = event.GetKeyCode();
    if (event.HasAnyModifiers() || (key != WXK_SPACE && key != WXK_BACK && key != WXK_ESCAPE)) return false;
    const wxWindow* focus = FindFocus();
    if (focus == m_view->GetCanvas()->GetWindow()) return false;
    if (key == WXK_SPACE && dynamic_cast<const wxAnyButton*>(focus)) return false;  // it presses the button
    const auto holdsFocus = [focus](const wxWindow* bar) {
        for (const wxWindow* window = focus; window; window = window->GetParent())
            if (window == bar) return true;
        return false;
    };
    if (holdsFocus(m_materialBar)) return key == WXK_ESCAPE && !m_materialBar->IsPopupShown();
    return !focus || focus == this || holdsFocus(m_animationBar) || holdsFocus(m_toolBar) ||
           holdsFocus(m_statusBar);
}

void CAViewerFrame::ApplySettings() {
    m_view->GetEngine().SetTextureRenderMode(0);
    m_view->Show(CShowState::From(CSettings::Instance()));
}

void CAViewerFrame::ShowHint(const std::wstring& text) {
    const CVec3 background = m_view->Shown().background;
    m_hint = text;
    m_view->SetHint(MakeHintPicture(*this, text, background.x, background.y, background.z));
}

CFrameState CAViewerFrame::State() const {
    CFrameState now = m_state;
    now.shown = m_view->Shown();
    now.canStartShow = m_slideShow->CanStart();
    now.isShowRunning = m_slideShow->IsRunning();
    now.activeTool = m_tools.IsActive() ? m_tools.Identifier() : 0;
    return now;
}

CCommandState CAViewerFrame::StateOfCommand(int id) const {
    const CCommand* command = FindCommand(id);
    return command ? StateOf(*command, State()) : CCommandState{false, false};
}

void CAViewerFrame::ShowCommandStates() {
    const CStateOfCommand stateOf = [now = State()](const CCommand& command) {
        return StateOf(command, now);
    };
    ShowStates(*m_menuBar, stateOf);
    ShowStates(*m_toolBar, stateOf);
    m_materialBar->ShowStates(stateOf);
    TickSceneCamera(*m_menuBar, SceneCameras());
}

CSceneCameras CAViewerFrame::SceneCameras() const {
    const C3dsDisplayWrap& engine = m_view->GetEngine();
    return {engine.GetFileCameraNames(), engine.GetCameraName()};
}

// --- commands -------------------------------------------------------------------------------------------

bool CAViewerFrame::HasHandler(int id) {
    return CCommandHandlers::Find(id) != nullptr;
}

void CAViewerFrame::RunCommand(int id) {
    if (m_session->IsBusy() || m_closed) return;
    if (const auto recent = m_recent.GetIndexByResource(id)) {
        m_session->OpenRecent(*recent);
    } else if (id >= kCmdFirstSceneCamera && id < kCmdFirstSceneCamera + kMaxSceneCameras) {
        const std::vector<std::string> names = m_view->GetEngine().GetFileCameraNames();
        const auto index = static_cast<std::size_t>(id - kCmdFirstSceneCamera);
        if (index < names.size()) m_view->SetFileCamera(names[index]);
    } else if (StateOfCommand(id).enabled) {
        if (const CCommandHandlers::CHandler handler = CCommandHandlers::Find(id)) handler(*this);
    }
    if (!m_closed) ShowCommandStates();
}

/** Whatever takes a step for itself is asked here, before the folder's files. */
void CAViewerFrame::StepModel(folder_models::EStep step) {
    ShowRunning(step == folder_models::EStep::Next ? kCmdNextFile : kCmdPreviousFile);
    if (!m_session->StepScene(step) && !m_modelList->Manager().Step(step)) m_session->Step(step);
    ShowRunning(0);
}

void CAViewerFrame::TogglePlaying() {
    PlayAnimation(!m_state.isPlaying);
}

void CAViewerFrame::ResetView() {
    const int last = CSettings::Instance().lastCamera;
    CCommandHandlers::Find(IsPresetCamera(last) ? last : kCmdIsoCamera)(*this);
}

void CAViewerFrame::PlayAnimation(bool play) {
    m_session->Play(play);
    m_state.isPlaying = m_session->IsPlaying();
    m_animationBar->ShowPlaying(m_state.isPlaying);
    ShowCommandStates();
}

void CAViewerFrame::ShowFrame(int frame) {
    if (m_state.isPlaying) PlayAnimation(false);
    m_view->GetEngine().SetFrame(static_cast<float>(frame));
    m_view->Redraw();
}

void CAViewerFrame::ShowNotes() {
    m_files->HoldModel(kCmdSceneNotes, [this] { CSceneNotesDlg(this, m_notes).ShowModal(); });
}

void CAViewerFrame::SetPovOptions() {
    m_files->HoldModel(kCmdPovSettings, [this] { CPOVRaySettingsDlg(this).ShowModal(); });
}

void CAViewerFrame::ExportPov() {
    m_files->HoldModel(kCmdExportPov, [this] { RunPovExport(m_session->Document().path, *m_view, *this); });
}

void CAViewerFrame::ExportGltf() {
    m_files->HoldModel(kCmdExportGltf, [this] {
        const CResult<std::wstring> saved = RunGltfExport(m_session->Document().path, *m_view, *this);
        m_statusBar->EndProgress();
        if (!saved)
            Tell(lng::Text("The scene could not be exported.") + L"\n" + lng::Text(saved.Error()));
        else if (!saved.Value().empty())
            ShowMessage(lng::Text("The scene was exported as %s.", file_util_ex::ShownText(saved.Value())));
    });
}

/** No message box tells of a failure: the status bar does. */
void CAViewerFrame::SaveScreenshot() {
    m_files->HoldModel(kCmdScreenShot, [this] {
        const CResult<std::wstring> saved = RunScreenshot(m_session->Document().path, *m_view, *this);
        if (!saved)
            ShowMessage(lng::Text("The picture could not be saved:") + L" " + lng::Text(saved.Error()));
        else if (!saved.Value().empty())
            ShowMessage(lng::Text("The picture was saved as %s.", file_util_ex::ShownText(saved.Value())));
    });
}

void CAViewerFrame::ExportGoogleDrive() {
    m_files->HoldModel(kCmdExportGoogleDrive, [this] {
        const CScriptScene* script = m_session->ScriptScene();
        const auto endProgress = [this] { m_statusBar->EndProgress(); };
        const CDriveModel model{file_util_ex::GetFileName(m_session->Document().path),
                                script ? script->backgroundImage : std::wstring(), endProgress};
        (void)RunDriveExport(model, *m_view).HasValue();  // it fails without a message
        endProgress();
    });
}

void CAViewerFrame::SetHtmlOptions() {
    m_files->HoldModel(kCmdHtmlSettings,
                       [this] { CHtmlSettingsDlg(this, CHtmlSettings::Instance()).ShowModal(); });
}

void CAViewerFrame::ExportHtml() {
    m_files->HoldModel(kCmdExportHtml, [this] {
        const std::wstring name = file_util_ex::GetFileName(m_session->Document().path);
        const CResult<std::wstring> saved = RunHtmlExport(m_view->GetPath(), name, *m_view, *this);
        m_statusBar->EndProgress();
        if (!saved)
            ShowMessage(lng::Text("The page could not be exported:") + L" " + lng::Text(saved.Error()));
        else if (!saved.Value().empty())
            ShowMessage(lng::Text("The page was exported as %s.", file_util_ex::ShownText(saved.Value())));
    });
}

void CAViewerFrame::ShowRunning(int commandId) {
    m_state.runningCommand = commandId;
    ShowCommandStates();
}
