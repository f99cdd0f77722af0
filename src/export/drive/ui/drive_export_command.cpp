// SPDX-License-Identifier: MIT
#include "export/drive/ui/drive_export_command.h"

#include <filesystem>
#include <optional>
#include <utility>

#include "base/jobs/CJobProgress.h"
#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "export/drive/drive_export.h"
#include "export/drive/ui/run_helper.h"
#include "export/source/ui/view_source.h"
#include "export/webgl/C3ds2WebGL.h"
#include "export/webgl/CHtmlSettings.h"
#include "export/webgl/ui/html_export_command.h"
#include "export/webgl/web_export_format.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "model/textures/CModelSurroundings.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CUserPrompt.h"

using file_util_ex::ConvertToUTF8;

namespace {

/** The steps of an export of one view, which stays as it is meanwhile. */
class CDriveExport {
  public:
    CDriveExport(const CDriveModel& model, CViewer3DSWindowHandler& view)
        : m_model(model),
          m_view(view),
          m_still(std::in_place, view),
          m_source{*view.GetEngine().Prepared(), view.GetEngine().GetTextures(), view.SeenView(),
                   CPageTexts::InProgramLanguage(), view.GetEngine().GetScene()},
          m_format(web_export_format::Make(CHtmlSettings::Instance(), m_source.seen, model.fileName)) {}

    [[nodiscard]] CStatus Run() {
        const CDriveExportPlaces places{std_file_paths::GetAppFolderPath(),
                                        std_file_paths::GetCacheHomePath(), m_model.fileName};
        return ExportToDrive(places, Steps(), CDriveWorkArea::CTime::clock::now());
    }

  private:
    CDriveExportSteps Steps() {
        CDriveExportSteps steps;
        steps.writeScreenshot = [this](const std::string& path) {
            (void)m_view.SaveScreenshot(
                file_util_ex::PathFromBytes(path));  // without it the page has no picture
        };
        steps.writePage = [this](const std::string& path) { return WritePage(path); };
        // A page whose archive cannot be written has a link that leads nowhere, but is a page; as in the export of pages.
        if (m_format.downloadLink)
            steps.writeArchive = [this](const std::string& page) {
                (void)MakeArchiveOf(m_view, page, m_format.modelFileName).HasValue();
            };
        steps.makeNotes = [this] { return Notes(); };
        steps.runHelper = [this](const std::wstring& commandLine) {
            m_still.reset();
            m_model.whenReady();
            RunHelper(commandLine);
        };
        return steps;
    }

    [[nodiscard]] CStatus WritePage(const std::string& path) {
        CStatus written = CDone{};
        m_view.LoadBeside([&](CJobProgress& progress) {
            progress.SetPhase(lng::Mark("Exporting..."));
            written = C3ds2WebGL::TryExport(m_source, path, m_format, &progress);
        });
        return written;
    }

    [[nodiscard]] CUploadNotes Notes() {
        CUploadNotes notes = UploadNotesOf(*m_view.Get3dsFile(), m_source.textures);
        if (m_model.backgroundPicture.empty()) return notes;
        const std::string path = ConvertToUTF8(m_model.backgroundPicture);
        const CModelSurroundings surroundings(file_util_ex::GetFilePath(ConvertToUTF8(m_view.GetPath())));
        std::error_code error;
        if (!surroundings.IsInFolder(std::filesystem::weakly_canonical(path, error)))
            notes.outside.push_back(path);
        return notes;
    }

    const CDriveModel& m_model;
    CViewer3DSWindowHandler& m_view;
    std::optional<CStillView> m_still;  ///< until the helper runs
    CWebGLSource m_source;
    C3ds2WebGL::COutFormat m_format;
};

}  // namespace

CStatus RunDriveExport(const CDriveModel& model, CViewer3DSWindowHandler& view) {
    const CBusyCursor cursor;
    if (!SceneOf(view)) return CDone{};
    return CDriveExport(model, view).Run();
}
