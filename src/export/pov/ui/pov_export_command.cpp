// SPDX-License-Identifier: MIT
#include "export/pov/ui/pov_export_command.h"

#include <wx/window.h>

#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "export/pov/pov_export_format.h"
#include "export/pov/ui/CPovExportDialog.h"
#include "export/source/ui/view_source.h"
#include "settings/CSettings.h"
#include "widgets/ui/CBXFileDialogI.h"

namespace {

constexpr char kSaveEntry[] = "pov_out";

/** Sets CSettings::povLastName to the export's target. False when the user cancels. */
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
    if (modelPath.empty() || !SceneOf(view)) return;
    CSettings& settings = CSettings::Instance();
    C3ds2Pov::COutFormat format = pov_export_format::Make(
        settings, engine.GetCameraName(), {engine.GetBKRValue(), engine.GetBKGValue(), engine.GetBKBValue()},
        {engine.GetFileBKRValue(), engine.GetFileBKGValue(), engine.GetFileBKBValue()});
    if (!ChooseOutput(settings, parent)) return;
    const CStillView still(view);
    // Only now, because the model may have turned while the dialog was open.
    pov_export_format::SetAngles(format, engine.GetCameraName(), engine.GetRotAngleX(), engine.GetRotAngleY(),
                                 engine.GetRotAngleZ());
    pov_export_format::SetLighting(format, settings);
    parent.Refresh(false);
    CPovExportDialog dialog(&parent, format, {*engine.Prepared(), engine.GetTextures(), view.SeenView()});
    dialog.StartSoon();
    dialog.ShowModal();
}
