// SPDX-License-Identifier: MIT
#include "export/webgl/ui/html_export_command.h"

#include <filesystem>

#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "export/source/ui/view_source.h"
#include "export/webgl/C3ds2WebGL.h"
#include "export/webgl/CHtmlSettings.h"
#include "export/webgl/download_archive.h"
#include "export/webgl/web_export_format.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/CBXFileDialogI.h"
#include "widgets/ui/run_job.h"

namespace {

constexpr char kSaveEntry[] = "html_out";

std::wstring AskForPage(wxWindow& parent) {
    const CRegEntryGuard entry(kSaveEntry);
    return CBXFileDialogI::LaunchSaveDialog(&parent, L"html", L"*.html", lng::Text("Export to HTML5"), {},
                                            L"index.html");
}

CStatus WritePage(const std::string& page, const C3ds2WebGL::COutFormat& format,
                  CViewer3DSWindowHandler& view) {
    const C3dsDisplayWrap& engine = view.GetEngine();
    const CWebGLSource source{*engine.Prepared(), engine.GetTextures(), view.SeenView(),
                              CPageTexts::InProgramLanguage(), engine.GetScene()};
    CStatus written = CDone{};
    view.LoadBeside([&](CJobProgress& progress) {
        progress.SetPhase(lng::Mark("Exporting..."));
        written = C3ds2WebGL::TryExport(source, page, format, &progress);
    });
    return written;
}

/** Moves a file. */
CStatus Move(const std::string& from, std::string_view to) {
    std::error_code error;
    std::filesystem::rename(from, to, error);
    if (error) return CError{EErrorCode::WriteFailed, error.message(), std::string(to)};
    return CDone{};
}

}  // namespace

CStatus MakeArchiveOf(CViewer3DSWindowHandler& view, const std::string& page,
                      const std::string& modelFileName) {
    C3dsDisplayWrap& engine = view.GetEngine();
    // Here, as pictures of the view are for the thread of the windows.
    const std::wstring picture = std_file_paths::GetTempFilePath(L"page-preview.jpg");
    const bool hasPicture = view.SaveScreenshot(picture);
    const download_archive::CContent content{
        .scene = engine.Get3dsFile(),
        .writeScene = [&](std::string_view path) -> CStatus {
            if (engine.SaveAs(file_util_ex::PathFromBytes(path).c_str())) return CDone{};
            return engine.LastError();
        },
        .writePicture = [&](std::string_view path) -> CStatus {
            if (!hasPicture) return CError{EErrorCode::NotFound, "there is no picture", {}};
            return Move(file_util_ex::ConvertToUTF8(picture), path);
        }};
    CStatus made = CDone{};
    RunJob([&](CJobProgress&) {
        made = download_archive::Make(page, modelFileName, *engine.Prepared(), content);
    });
    file_util_ex::DeleteFileW(picture);
    return made;
}

CResult<std::wstring> RunHtmlExport(const std::wstring& modelPath, const std::wstring& modelFileName,
                                    CViewer3DSWindowHandler& view, wxWindow& parent) {
    if (modelPath.empty() || !SceneOf(view)) return std::wstring();
    const std::wstring path = AskForPage(parent);
    if (path.empty()) return path;
    RepaintWindows();  // or the dialog stays visible over the view for a while
    const CBusyCursor cursor;
    const CStillView still(view);
    const CHtmlSettings& settings = CHtmlSettings::Instance();
    const C3ds2WebGL::COutFormat format = web_export_format::Make(settings, view.SeenView(), modelFileName);
    const std::string page = file_util_ex::ConvertToUTF8(path);
    if (CStatus written = WritePage(page, format, view); !written) return written.Error();
    CStatus made = CDone{};
    if (format.downloadLink) made = MakeArchiveOf(view, page, format.modelFileName);
    // Its answer decides nothing; it may take a second.
    if (settings.GetLaunchBrowser())
        RunJob([&](CJobProgress&) { (void)std_file_paths::LaunchBrowser(page); });
    if (!made) return made.Error();
    return path;
}
