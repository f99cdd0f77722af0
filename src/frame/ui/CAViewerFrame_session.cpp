// SPDX-License-Identifier: MIT
// How the main window shows what the session and the view report; everything else is in CAViewerFrame.cpp.
#include <wx/menu.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "files/file_util_ex.h"
#include "frame/materials/ui/CMaterialCommands.h"
#include "frame/scene_summary.h"
#include "frame/slideshow/ui/CSlideShow.h"
#include "frame/ui/CAViewerFrame.h"
#include "frame/ui/CAnimationBar.h"
#include "frame/ui/CSceneStatusBar.h"
#include "frame/ui/command_menus.h"
#include "model/prepare/CPreparedScene.h"
#include "script/CSceneScript.h"
#include "session/CSession.h"
#include "settings/CSettings.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CUserPrompt.h"
#include "widgets/access/ui/accessible_role.h"
#include "widgets/ui/CBXFileDialogI.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/wx_window_state.h"

using folder_models::EStep;

namespace {

/** The text that the view shows instead of the document's scene. */
std::wstring HintOf(const CDocument& document, const CError& error) {
    const std::wstring name = file_util_ex::ShownName(file_util_ex::GetFileName(document.path));
    std::wstring text = lng::Text("%s cannot be opened:", name) + L"\n";
    // The text names the file itself already.
    const std::wstring& named = document.origin == EOrigin::Script ? document.path : document.modelPath;
    const bool isOfPart = file_util_ex::PathFromBytes(error.where) != named;
    text += lng::Text(
        CError{error.code, error.message, isOfPart ? utf8_text::Printable(error.where, '?') : std::string()});
    if (document.HasFile()) text += L"\n" + lng::Text("F5 tries again.");
    return text;
}

}  // namespace

void CAViewerFrame::OpenByPath(const std::wstring& path, std::function<void(const CError&)> failed) {
    OnOpening();  // from the first picture on
    m_openFailed = std::move(failed);
    m_view->WhenReady([this, path] { m_session->OpenFileOrFolder(path); });
}

// --- what the session tells -----------------------------------------------------------------------------

void CAViewerFrame::ShowTitle(const std::wstring& title) {
    SetTitle(file_util_ex::ShownText(title));
}

void CAViewerFrame::ShowMessage(const std::wstring& text) {
    m_statusBar->ShowMessage(text);
}

/** The toolkit would restore the bar's text later, and leave a character behind if it was empty. */
void CAViewerFrame::DoGiveHelp(const wxString& text, bool show) {
    if (m_statusBar) m_statusBar->ShowHelp(show ? text.ToStdWstring() : std::wstring());
}

void CAViewerFrame::Tell(const std::wstring& text) {
    CUserPrompt::Instance().ShowMessage(text);
}

bool CAViewerFrame::MayLoseEdits() {
    return m_materials->MayLoseEdits();
}

void CAViewerFrame::OnColorChosen(const wxColour& color) {
    m_materials->OnColorChosen(color);
}

void CAViewerFrame::OnColorPopupClosed() {
    m_materials->OnColorPopupClosed();
}

void CAViewerFrame::BeginBusy() {
    CUserPrompt::Instance().BeginBusy();
}

void CAViewerFrame::EndBusy() {
    CUserPrompt::Instance().EndBusy();
}

bool CAViewerFrame::IsFullScreenShown() const {
    return IsFullScreen();
}

void CAViewerFrame::SetFullScreen(bool fullScreen) {
    if (IsFullScreen() != fullScreen) ToggleFullScreen();
}

void CAViewerFrame::OnOpening() {
    m_view->SetHint({});  // the user has followed it
    m_slideShow->OnOpening();
}

void CAViewerFrame::AskForTurn() {
    CallAfter([this] {
        if (!m_closed) m_session->RunWaiting();
    });
}

void CAViewerFrame::OnOpened(const COpenReport& report) {
    const auto failed = std::exchange(m_openFailed, nullptr);
    const bool hasFailed = report.result == EOpened::Failed;
    if (hasFailed && failed) failed(report.error);
    if (hasFailed && !report.isReload) m_hint = HintOf(m_session->Document(), report.error);
    const bool hasCamera = report.scene && !report.scene->camera.empty();
    if (report.result == EOpened::Opened && !report.isReload && !hasCamera &&
        CSettings::Instance().lastCamera != kCmdIsoCamera)
        ResetView();
    if (report.result != EOpened::AlreadyShown) m_materials->OnOpened();
    ShowDocument();
    TellShow(report);
    // The view may still show the model before, which would hide the hint.
    if (hasFailed && !report.isReload && m_view->GetEngine().Prepared())
        ShowMessage(lng::Text("%s cannot be opened:", file_util_ex::ShownName(file_util_ex::GetFileName(
                                                          m_session->Document().path))) +
                    L" " + lng::Text(CError{report.error.code, report.error.message, {}}));
}

void CAViewerFrame::OnDocumentChanged() {
    if (m_session->Document().origin == EOrigin::None)
        m_hint = lng::Text("Open a model: Ctrl+O or drop one here");
    m_materials->OnEdited();
    ShowDocument();
    m_slideShow->OnCounted(
        static_cast<int>(std::max<std::size_t>(m_session->FolderModels(), m_session->SceneCount())));
}

void CAViewerFrame::ShowDocument() {
    C3dsDisplayWrap& engine = m_view->GetEngine();
    const CPreparedScene* scene = engine.Prepared();
    CSceneSummary summary = scene ? SummaryOf(*scene, m_session->ScriptNotes()) : CSceneSummary{};
    // Steps go through the scenes of a presentation, or else through the folder.
    const auto scenes = static_cast<unsigned>(m_session->SceneCount());
    summary.place = scenes > 1 ? PlaceText(static_cast<unsigned>(m_session->SceneIndex()) + 1, scenes)
                               : PlaceText(m_session->FolderPlace(), m_session->FolderModels());
    if (!scene) ShowHint(m_hint);
    CBXFileDialogI::SetDocument(m_session->Document().path);
    m_state.hasModel = m_session->Document().isOpen;
    m_state.hasFile = m_session->Document().HasFile();
    m_state.canStep = m_session->FolderModels() >= 2 || m_session->SceneCount() >= 2;
    m_state.hasNotes = !summary.lines.empty();
    m_state.canUndo = m_session->Edits().CanUndo();
    m_state.canRedo = m_session->Edits().CanRedo();
    m_state.hasUnsavedEdits = m_session->HasUnsavedEdits();
    m_state.isAnimated = engine.HasAnimation();
    m_state.isPlaying = m_session->IsPlaying();
    m_notes = summary.lines;
    m_statusBar->EndProgress();
    m_statusBar->ShowScene(summary);
    NameView(summary);
    ShowAnimation();
    ShowSceneCameras(*m_menuBar, SceneCameras());
    const auto nameOf = [](const CEditLog::CStep* step) { return step ? step->what : std::wstring(); };
    ShowStepNames(*m_menuBar, nameOf(m_session->Edits().NextUndo()), nameOf(m_session->Edits().NextRedo()));
    m_recent.UpdateMenu(*m_menuBar->GetMenu(0));
    ShowPanes();
    ShowCommandStates();
}

void CAViewerFrame::NameView(const CSceneSummary& summary) {
    wxWindow& canvas = *m_view->GetCanvas()->GetWindow();
    const bool isEmpty = !m_view->GetEngine().Prepared();
    const std::wstring name =
        isEmpty ? m_hint : file_util_ex::ShownName(file_util_ex::GetFileName(m_session->Document().path));
    SetAccessibleName(canvas, lng::Labelled(lng::Text("3D view"), name));
    SetAccessibleDescription(canvas, isEmpty ? std::wstring() : summary.triangles + L", " + summary.objects);
}

void CAViewerFrame::ShowAnimation() {
    const C3dsDisplayWrap& engine = m_view->GetEngine();
    const CPreparedScene* scene = engine.Prepared();
    if (!scene) return;
    m_animationBar->SetRange(static_cast<int>(scene->firstFrame), static_cast<int>(scene->lastFrame));
    m_animationBar->ShowFrame(static_cast<int>(std::lround(engine.GetFrame())));
    m_animationBar->ShowPlaying(m_state.isPlaying);
}

// --- what the view tells --------------------------------------------------------------------------------

void CAViewerFrame::OnViewKeyDown(int keyCode) {
    switch (keyCode) {
        case WXK_SPACE:
            StepSoon(EStep::Next);
            break;
        case WXK_BACK:
            StepSoon(EStep::Previous);
            break;
        case WXK_ESCAPE:
            if (!m_slideShow->LeaveFullScreen() && !m_materials->Cancel() &&
                CSettings::Instance().closeOnEsc && (m_session->IsBusy() || m_session->MayLoseEdits()))
                Close(true);
            break;
        case WXK_RETURN:
        case WXK_NUMPAD_ENTER:
            (void)m_materials->ApplyAgain();
            break;
        case WXK_F11:
            RunCommand(kCmdFullScreen);
            break;
        default:
            break;
    }
}

/** Once for all presses that wait, and after their pictures were painted: the steps of a key that is held down must not
 * queue up. Whatever waits in the event loop comes before what is called after it. */
void CAViewerFrame::StepSoon(EStep step) {
    if (std::exchange(m_wantedStep, step)) return;
    CallAfter([this] {
        const std::optional<EStep> wanted = std::exchange(m_wantedStep, std::nullopt);
        if (wanted) RunCommand(*wanted == EStep::Next ? kCmdNextFile : kCmdPreviousFile);
    });
}

void CAViewerFrame::OnViewLeftButtonDown() {
    m_slideShow->OnTakenInHand();
}

void CAViewerFrame::OnViewRightButtonDown() {
    if (m_materials->Cancel()) return;
    m_slideShow->OnLookedAt();
    // After the press has been handled, because the menu captures the mouse.
    CallAfter([this] { ShowContextMenu(wxDefaultPosition); });
}

void CAViewerFrame::ShowContextMenu(wxPoint where) {
    if (m_closed || m_session->IsBusy()) return;
    const CStateOfCommand stateOf = [now = State()](const CCommand& c) { return StateOf(c, now); };
    const std::unique_ptr<wxMenu> menu = MakeContextMenu(SceneCameras(), stateOf);
    int chosen = wxID_NONE;
    {
        const CTurns::CHold hold(m_session->Turns());
        chosen = GetPopupMenuSelectionFromUser(*menu, where);
    }
    if (chosen != wxID_NONE) RunCommand(CommandOfWidgetId(chosen));
}

// --- the end --------------------------------------------------------------------------------------------

void CAViewerFrame::OnClose(wxCloseEvent& event) {
    // During an opening, a question or an export the main window is in use; it closes afterwards.
    if (!m_session->MayClose()) {
        if (event.CanVeto()) event.Veto();
        return;
    }
    // Whoever cannot be refused (a forced end) has asked already, or nobody is left to answer.
    if (event.CanVeto() && !m_session->MayLoseEdits()) return event.Veto();
    KeepState();
    m_closed = true;
    Destroy();
}

void CAViewerFrame::CloseNow() {
    Close();
}

void CAViewerFrame::KeepState() {
    if (m_closed) return;
    wx_window_state::SaveState(this, kStateName);
    m_recent.SaveStdProfileSettings();
}
