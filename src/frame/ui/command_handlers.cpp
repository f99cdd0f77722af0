// SPDX-License-Identifier: MIT
#include "frame/ui/command_handlers.h"

#include <unordered_map>

#include "engine/C3dsDisplayWrap.h"
#include "export/pov/ui/CPOVRaySettingsDlg.h"
#include "frame/command_ids.h"
#include "frame/ui/CAViewerFrame.h"
#include "settings/CSettings.h"
#include "view/ui/CViewer3DSWindowHandler.h"

namespace {

using folder_models::EStep;

template <int id, void (CViewer3DSWindowHandler::*camera)()>
void SetCamera(CAViewerFrame& frame) {
    (frame.View().*camera)();
    CSettings::Instance().lastCamera = id;
}

/** Turns a setting over and hands it to the engine. */
template <bool CSettings::*setting, void (C3dsDisplayWrap::*show)(bool)>
void Toggle(CAViewerFrame& frame) {
    CSettings& settings = CSettings::Instance();
    settings.*setting = !(settings.*setting);
    (frame.View().GetEngine().*show)(settings.*setting);
    frame.View().Redraw();
}

/** The same for the view. */
template <bool CSettings::*setting, void (CViewer3DSWindowHandler::*show)(bool)>
void ToggleView(CAViewerFrame& frame) {
    CSettings& settings = CSettings::Instance();
    settings.*setting = !(settings.*setting);
    (frame.View().*show)(settings.*setting);
    frame.View().Redraw();
}

template <void (CFileCommands::*command)()>
void File(CAViewerFrame& frame) {
    (frame.Files().*command)();
}

}  // namespace

CCommandHandlers::CHandler CCommandHandlers::Find(int id) {
    using View = CViewer3DSWindowHandler;
    using Engine = C3dsDisplayWrap;
    static const std::unordered_map<int, CHandler> handlers{
        {kCmdOpen, File<&CFileCommands::Open>},
        {kCmdReload, File<&CFileCommands::Reload>},
        {kCmdSaveAs, File<&CFileCommands::SaveAs>},
        {kCmdCompressToZip, File<&CFileCommands::CompressToZip>},
        {kCmdDeleteFile, File<&CFileCommands::DeleteFile>},
        {kCmdExit, [](CAViewerFrame& frame) { frame.Close(); }},
        {kCmdTopCamera, SetCamera<kCmdTopCamera, &View::SetTopCamera>},
        {kCmdLeftCamera, SetCamera<kCmdLeftCamera, &View::SetLeftCamera>},
        {kCmdRightCamera, SetCamera<kCmdRightCamera, &View::SetRightCamera>},
        {kCmdFrontCamera, SetCamera<kCmdFrontCamera, &View::SetFrontCamera>},
        {kCmdBackCamera, SetCamera<kCmdBackCamera, &View::SetBackCamera>},
        {kCmdIsoCamera, SetCamera<kCmdIsoCamera, &View::SetIsoCamera>},
        {kCmdShowBounds, Toggle<&CSettings::showBounds, &Engine::SetShowBounds>},
        {kCmdShowCameras, Toggle<&CSettings::showCameras, &Engine::SetShowCameras>},
        {kCmdShowLights, Toggle<&CSettings::showLights, &Engine::SetShowLights>},
        {kCmdRenderMode, ToggleView<&CSettings::wireFrame, &View::SetWireframe>},
        {kCmdShowAxis, Toggle<&CSettings::showAxis, &Engine::SetShowAxis>},
        {kCmdRotate, ToggleView<&CSettings::rotate, &View::SetRotate>},
        {kCmdPreviousFile, [](CAViewerFrame& frame) { frame.Files().Step(EStep::Previous); }},
        {kCmdNextFile, [](CAViewerFrame& frame) { frame.Files().Step(EStep::Next); }},
        {kCmdFullScreen, [](CAViewerFrame& frame) { frame.ToggleFullScreen(); }},
        {kCmdShowToolBar, [](CAViewerFrame& frame) { frame.ToggleToolBar(); }},
        {kCmdPlayAnimation, [](CAViewerFrame& frame) { frame.TogglePlaying(); }},
        {kCmdResetView, [](CAViewerFrame& frame) { frame.ResetView(); }},
        {kCmdSceneNotes, [](CAViewerFrame& frame) { frame.ShowNotes(); }},
        {kCmdPovSettings, [](CAViewerFrame& frame) { CPOVRaySettingsDlg(&frame).ShowModal(); }},
        {kCmdExportPov, [](CAViewerFrame& frame) { frame.ExportPov(); }}};
    const auto found = handlers.find(id);
    return found == handlers.end() ? nullptr : found->second;
}
