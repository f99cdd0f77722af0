// SPDX-License-Identifier: MIT
#include "frame/ui/command_handlers.h"

#include <type_traits>
#include <unordered_map>

#include "frame/command_ids.h"
#include "frame/dialogs/ui/frame_dialogs.h"
#include "frame/materials/ui/CMaterialCommands.h"
#include "frame/slideshow/ui/CSlideShow.h"
#include "frame/ui/CAViewerFrame.h"
#include "frame/ui/CFileCommands.h"
#include "session/CSession.h"
#include "settings/CSettings.h"
#include "update/win_sparkle.h"
#include "view/ui/CViewer3DSWindowHandler.h"

namespace {

using folder_models::EStep;

template <int id, ECameraPreset preset>
void SetCamera(CAViewerFrame& frame) {
    frame.View().SetPreset(preset);
    CSettings::Instance().lastCamera = id;
}

/** Toggles how the view shows models, and stores it for the next start. */
template <bool CShowState::*shown, bool CSettings::*setting>
void Toggle(CAViewerFrame& frame) {
    CShowState show = frame.View().Shown();
    show.*shown = !(show.*shown);
    frame.View().Show(show);
    CSettings::Instance().*setting = show.*shown;
}

template <void (CFileCommands::*command)()>
void File(CAViewerFrame& frame) {
    (frame.Files().*command)();
}

/** For what the opening of a model must not disturb: a dialog, or a wait for another program. */
template <int id, auto run>
void Hold(CAViewerFrame& frame) {
    frame.Files().HoldModel(id, [&frame] {
        if constexpr (std::is_invocable_v<decltype(run), CAViewerFrame&>)
            run(frame);
        else
            run();
    });
}

void ShowSettings(CAViewerFrame& frame) {
    (void)EditSettings(&frame);  // whoever uses them reads them anew
}

void ShowManual() {
    OpenManual();
}

template <int id, EMaterialTool tool>
void Tool(CAViewerFrame& frame) {
    frame.Materials().Choose(tool, id);
}

template <void (CSession::*change)()>
void Change(CAViewerFrame& frame) {
    (frame.Session().*change)();
    frame.View().Redraw();
}

}  // namespace

CCommandHandlers::CHandler CCommandHandlers::Find(int id) {
    using Shown = CShowState;
    using Settings = CSettings;
    static const std::unordered_map<int, CHandler> handlers{
        {kCmdOpen, File<&CFileCommands::Open>},
        {kCmdReload, [](CAViewerFrame& frame) { frame.Session().Reload(); }},
        {kCmdSaveAs, File<&CFileCommands::SaveAs>},
        {kCmdCompressToZip, File<&CFileCommands::CompressToZip>},
        {kCmdDeleteFile, File<&CFileCommands::DeleteFile>},
        {kCmdExit, [](CAViewerFrame& frame) { frame.Close(); }},
        {kCmdTopCamera, SetCamera<kCmdTopCamera, ECameraPreset::Top>},
        {kCmdLeftCamera, SetCamera<kCmdLeftCamera, ECameraPreset::Left>},
        {kCmdRightCamera, SetCamera<kCmdRightCamera, ECameraPreset::Right>},
        {kCmdFrontCamera, SetCamera<kCmdFrontCamera, ECameraPreset::Front>},
        {kCmdBackCamera, SetCamera<kCmdBackCamera, ECameraPreset::Back>},
        {kCmdIsoCamera, SetCamera<kCmdIsoCamera, ECameraPreset::Iso>},
        {kCmdShowBounds, Toggle<&Shown::bounds, &Settings::showBounds>},
        {kCmdShowCameras, Toggle<&Shown::cameras, &Settings::showCameras>},
        {kCmdShowLights, Toggle<&Shown::lights, &Settings::showLights>},
        {kCmdRenderMode, Toggle<&Shown::wire, &Settings::wireFrame>},
        {kCmdShowAxis, Toggle<&Shown::axes, &Settings::showAxis>},
        {kCmdRotate, Toggle<&Shown::rotate, &Settings::rotate>},
        {kCmdPreviousFile, [](CAViewerFrame& frame) { frame.StepModel(EStep::Previous); }},
        {kCmdNextFile, [](CAViewerFrame& frame) { frame.StepModel(EStep::Next); }},
        {kCmdUndo, Change<&CSession::Undo>},
        {kCmdRedo, Change<&CSession::Redo>},
        {kCmdToolColor, Tool<kCmdToolColor, EMaterialTool::Color>},
        {kCmdToolShininess, Tool<kCmdToolShininess, EMaterialTool::Shininess>},
        {kCmdToolTransparency, Tool<kCmdToolTransparency, EMaterialTool::Transparency>},
        {kCmdToolReplace, Tool<kCmdToolReplace, EMaterialTool::Replace>},
        {kCmdToolFilter, Tool<kCmdToolFilter, EMaterialTool::Filter>},
        {kCmdSaveEdits, [](CAViewerFrame& frame) { frame.Materials().SaveEdits(); }},
        {kCmdShowMaterialBar, [](CAViewerFrame& frame) { frame.ToggleMaterialBar(); }},
        {kCmdFullScreen, [](CAViewerFrame& frame) { frame.ToggleFullScreen(); }},
        {kCmdStartSlideShow, [](CAViewerFrame& frame) { frame.SlideShow().Start(); }},
        {kCmdStopSlideShow, [](CAViewerFrame& frame) { frame.SlideShow().Stop(); }},
        {kCmdFullScreenSlideShow, [](CAViewerFrame& frame) { frame.SlideShow().StartFullScreen(); }},
        {kCmdShowModelList, [](CAViewerFrame& frame) { frame.ToggleModelList(); }},
        {kCmdShowToolBar, [](CAViewerFrame& frame) { frame.ToggleToolBar(); }},
        {kCmdPlayAnimation, [](CAViewerFrame& frame) { frame.TogglePlaying(); }},
        {kCmdResetView, [](CAViewerFrame& frame) { frame.ResetView(); }},
        {kCmdSceneNotes, [](CAViewerFrame& frame) { frame.ShowNotes(); }},
        {kCmdPovSettings, [](CAViewerFrame& frame) { frame.SetPovOptions(); }},
        {kCmdExportGoogleDrive, [](CAViewerFrame& frame) { frame.ExportGoogleDrive(); }},
        {kCmdExportPov, [](CAViewerFrame& frame) { frame.ExportPov(); }},
        {kCmdExportGltf, [](CAViewerFrame& frame) { frame.ExportGltf(); }},
        {kCmdDownload, [](CAViewerFrame& frame) { frame.ToggleBrowser(); }},
        {kCmdUpload, [](CAViewerFrame& frame) { frame.UploadModel(); }},
        {kCmdClearCache, [](CAViewerFrame& frame) { frame.ClearCache(); }},
        {kCmdScreenShot, [](CAViewerFrame& frame) { frame.SaveScreenshot(); }},
        {kCmdSelectLanguage, Hold<kCmdSelectLanguage, &SelectLanguage>},
        {kCmdSettings, Hold<kCmdSettings, &ShowSettings>},
        {kCmdManual, Hold<kCmdManual, &ShowManual>},
        {kCmdShortcuts, [](CAViewerFrame& frame) { ShowShortcuts(frame); }},
        {kCmdVisitWebsite, Hold<kCmdVisitWebsite, &VisitWebsite>},
        {kCmdAbout, Hold<kCmdAbout, &ShowAbout>},
        {kCmdCheckForUpdates, Hold<kCmdCheckForUpdates, &win_sparkle_check_update_with_ui>},
        {kCmdHtmlSettings, [](CAViewerFrame& frame) { frame.SetHtmlOptions(); }},
        {kCmdExportHtml, [](CAViewerFrame& frame) { frame.ExportHtml(); }}};
    const auto found = handlers.find(id);
    return found == handlers.end() ? nullptr : found->second;
}
