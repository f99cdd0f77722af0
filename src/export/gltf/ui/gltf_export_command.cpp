// SPDX-License-Identifier: MIT
#include "export/gltf/ui/gltf_export_command.h"

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "export/gltf/write_gltf.h"
#include "export/source/ui/view_source.h"
#include "files/file_util_ex.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/CBXFileDialogI.h"
#include "widgets/ui/run_job.h"

namespace {

constexpr char kSaveEntry[] = "gltf_out";

bool IsGlbName(std::wstring_view path) {
    return ascii_text::EqualNoCase(file_util_ex::ConvertToUTF8(file_util_ex::GetFileExt(path)), "glb");
}

/** Asks until the name is that of a .glb file, or the user cancels. */
std::wstring AskForTarget(const std::wstring& modelPath, wxWindow& parent) {
    const CRegEntryGuard entry(kSaveEntry);
    std::wstring folder;  // the remembered one
    std::wstring name = file_util_ex::SetFileExt(file_util_ex::GetFileName(modelPath), L"glb");
    while (true) {
        std::wstring path =
            CBXFileDialogI::LaunchSaveDialog(&parent, L"*.glb", lng::Text("glTF file (*.glb)|*.glb||"),
                                             lng::Text("Export to glTF"), folder, name);
        if (path.empty() || IsGlbName(path)) return path;
        CUserPrompt::Instance().ShowMessage(lng::Text(
            "A scene is exported as a .glb file, and %s would be none.", file_util_ex::GetFileName(path)));
        folder = file_util_ex::GetFilePath(path);
        name = file_util_ex::SetFileExt(file_util_ex::GetFileName(path), L"glb");
    }
}

}  // namespace

CResult<std::wstring> RunGltfExport(const std::wstring& modelPath, CViewer3DSWindowHandler& view,
                                    wxWindow& parent) {
    if (!SceneOf(view)) return std::wstring();
    const std::wstring path = AskForTarget(modelPath, parent);
    if (path.empty()) return path;
    RepaintWindows();  // or the dialog stays visible over the view for a while
    const CBusyCursor cursor;
    const CStillView still(view);
    const C3dsDisplayWrap& engine = view.GetEngine();
    const CGltfSource source{*engine.Prepared(), engine.GetTextures(), engine.GetScene()};
    CStatus written = CDone{};
    view.LoadBeside([&](CJobProgress& progress) {
        progress.SetPhase(lng::Mark("Exporting..."));
        written = WriteGlbFile(source, file_util_ex::ConvertToUTF8(path), {}, &progress);
    });
    if (!written) return written.Error();
    return path;
}
