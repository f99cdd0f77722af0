// SPDX-License-Identifier: MIT
#include "export/ui/pov_export_command.h"

#include <wx/window.h>

#include "engine/C3dsDisplayWrap.h"
#include "export/pov_export_format.h"
#include "export/ui/CPovExportDialog.h"
#include "platform/lng.h"
#include "platform/ui/CBXFileDialogI.h"
#include "settings/CSettings.h"
#include "view/ui/CViewer3DSWindowHandler.h"

namespace {

constexpr char kSaveEntry[] = "pov_out";

/** Sees to it that CSettings::povLastName is where to export to. False when the user cancels. */
bool ChooseOutput(CSettings& settings, wxWindow& parent) {
    if (pov_export_format::TakesLastName(settings)) return true;
    const CRegEntryGuard entry(kSaveEntry);
    const std::wstring path = CBXFileDialogI::LaunchSaveDialog(&parent, L"pov", L"*.pov",
                                                               lng::Text("Export to POV-Ray format"), {}, {});
    if (path.empty()) return false;
    settings.povLastName = path;
    return true;
}

}  // namespace

void RunPovExport(const std::wstring& modelPath, CViewer3DSWindowHandler& view, wxWindow& parent) {
    C3dsDisplayWrap& engine = view.GetEngine();
    if (modelPath.empty() || !engine.Get3dsFile()) return;
    CSettings& settings = CSettings::Instance();
    C3ds2Pov::COutFormat format = pov_export_format::Make(
        settings, engine.GetCameraName(), {engine.GetBKRValue(), engine.GetBKGValue(), engine.GetBKBValue()},
        {engine.GetFileBKRValue(), engine.GetFileBKGValue(), engine.GetFileBKBValue()});
    if (!ChooseOutput(settings, parent)) return;
    // After the dialog, while which the model may have gone on turning.
    pov_export_format::SetAngles(format, engine.GetCameraName(), engine.GetRotAngleX(), engine.GetRotAngleY(),
                                 engine.GetRotAngleZ());
    pov_export_format::SetLighting(format, settings);
    parent.Refresh(false);
    CPovExportDialog dialog(&parent, format, engine.Get3dsFile());
    dialog.StartSoon();
    dialog.ShowModal();
}
