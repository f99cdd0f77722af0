// SPDX-License-Identifier: MIT
// The slideshow in the main window.
#include <memory>

#include "base/text/utf8_text.h"
#include "engine/CGLCanvasI.h"
#include "files/file_util_ex.h"
#include "frame/materials/ui/CMaterialCommands.h"
#include "frame/model_list/ui/CModelListControl.h"
#include "frame/slideshow/ui/CSlideShow.h"
#include "frame/ui/CAViewerFrame.h"
#include "script/CSceneScript.h"
#include "session/CSession.h"
#include "settings/CSettings.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CUserPrompt.h"

void CAViewerFrame::MakeSlideShow() {
    m_slideShow = std::make_unique<CSlideShow>(static_cast<CSlideShowFrame&>(*this), *this,
                                               *m_view->GetCanvas()->GetWindow());
    m_aui.AddPane(m_slideShow->Bar(), wxAuiPaneInfo()
                                          .Name(kSlideShowPane)
                                          .ToolbarPane()
                                          .Top()
                                          .Row(1)
                                          .Position(0)
                                          .Gripper(false)
                                          .Floatable(false)
                                          .Show(CSettings::Instance().showToolBar));
}

void CAViewerFrame::TellShow(const COpenReport& report) {
    const CDocument& document = m_session->Document();
    CSlideShow::COpening opening;
    opening.hasFailed = report.result == EOpened::Failed && !report.isReload;
    const std::size_t scenes = m_session->SceneCount();
    opening.models = static_cast<int>(std::max<std::size_t>(report.folderModels, scenes));
    opening.name = file_util_ex::ShownName(file_util_ex::GetFileName(document.path));
    if (report.scene)
        opening.scene = {report.scene->timeMs, document.path, m_session->SceneIndex(),
                         m_session->SceneCount(), report.scene->loop};
    m_slideShow->OnOpened(opening);
}

// --- what it needs ----------------------------------------------------------------------------------------

void CAViewerFrame::ShowNextModel() {
    StepModel(folder_models::EStep::Next);
}

bool CAViewerFrame::IsShowHindered() const {
    return m_closed || m_session->IsBusy() || IsIconized();
}

bool CAViewerFrame::ListHoldsStep() const {
    return m_modelList->Manager().HoldsStep();
}

bool CAViewerFrame::HasUnsavedEdits() const {
    return m_session->HasUnsavedEdits();
}

void CAViewerFrame::CancelTool() {
    (void)m_materials->Cancel();  // there may be none
}

void CAViewerFrame::ShowChanged() {
    ShowCommandStates();
}

void CAViewerFrame::KeepPicture(EPicture how) {
    using EKeeping = CViewer3DSWindowHandler::EKeeping;
    m_view->KeepPicture(how == EPicture::Stays            ? EKeeping::UntilTold
                        : how == EPicture::StaysUntilNext ? EKeeping::UntilNext
                                                          : EKeeping::No);
}

std::wstring CAViewerFrame::Caption() const {
    return m_view->GetCaption();
}

void CAViewerFrame::SetCaption(const std::wstring& text) {
    m_view->SetCaption(text);
}

bool CAViewerFrame::FillsScreen() const {
    return IsFullScreen();
}

void CAViewerFrame::FillScreen(bool fill) {
    if (IsFullScreen() != fill) ToggleFullScreen();
}

void CAViewerFrame::SayOfShow(const std::wstring& text) {
    ShowMessage(text);
}

void CAViewerFrame::TellOfShow(const std::wstring& text) {
    const CTurns::CHold hold(m_session->Turns());
    CUserPrompt::Instance().ShowMessage(text);
}
