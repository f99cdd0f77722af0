// SPDX-License-Identifier: MIT
#include "export/drive/ui/drive_export_command.h"

#include <filesystem>

#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "export/drive/drive_export.h"
#include "export/drive/ui/run_helper.h"
#include "export/webgl/C3ds2WebGL.h"
#include "export/webgl/CHtmlSettings.h"
#include "export/webgl/download_archive.h"
#include "export/webgl/web_export_format.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "model/textures/CModelSurroundings.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/run_job.h"

using file_util_ex::ConvertToUTF8;

namespace {

/** The steps of an export of one view, which stays as it is meanwhile. */
class CDriveExport {
  public:
    CDriveExport(const CDriveModel& model, CViewer3DSWindowHandler& view)
        : m_model(model),
          m_view(view),
          m_source{*view.GetEngine().Prepared(), view.GetEngine().GetTextures(), view.SeenView(),
                   CPageTexts::InProgramLanguage()},
          m_format(web_export_format::Make(CHtmlSettings::Instance(), m_source.seen, model.fileName)) {}

    [[nodiscard]] CStatus Run() {
        const CDriveExportPlaces places{std_file_paths::GetAppFolderPath(),
                                        std_file_paths::GetCacheHomePath(), m_model.fileName};
        return ExportToDrive(places, Steps(), CDriveWorkArea::CTime::clock::now());
    }

  private:
    CDriveExportSteps Steps() {
        CDriveExportSteps steps;
        steps.writeScreenshot = [this](const std::string& path) { (void)WriteScreenshot(path); };
        steps.writePage = [this](const std::string& path) { return WritePage(path); };
        if (m_format.downloadLink)
            steps.writeArchive = [this](const std::string& page) { WriteArchive(page); };
        steps.makeNotes = [this] { return Notes(); };
        steps.runHelper = RunHelper;
        return steps;
    }

    [[nodiscard]] bool WriteScreenshot(std::string_view path) {
        return m_view.SaveScreenshot(file_util_ex::PathFromBytes(path));
    }

    [[nodiscard]] CStatus WritePage(const std::string& path) {
        CStatus written = CDone{};
        RunJob([&](CJobProgress& progress) {
            written = C3ds2WebGL::TryExport(m_source, path, m_format, &progress);
        });
        return written;
    }

    /** A page whose archive cannot be written leads to none, but is a page; as in the export of pages. */
    void WriteArchive(const std::string& page) {
        download_archive::CContent content;
        content.scene = m_view.Get3dsFile();
        content.writeScene = [this](std::string_view path) {
            return m_view.SaveToPath(file_util_ex::PathFromBytes(path));
        };
        content.writePicture = [this](std::string_view path) -> CStatus {
            if (WriteScreenshot(path)) return CDone{};
            return CError{EErrorCode::WriteFailed, lng::Mark("the picture could not be written"),
                          std::string(path)};
        };
        (void)download_archive::Make(page, ConvertToUTF8(m_model.fileName), m_source.scene, content)
            .HasValue();
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
    CWebGLSource m_source;
    C3ds2WebGL::COutFormat m_format;
};

}  // namespace

CStatus RunDriveExport(const CDriveModel& model, CViewer3DSWindowHandler& view) {
    const CBusyCursor cursor;
    const CPreparedScene* scene = nullptr;
    RunJob([&](CJobProgress&) { scene = view.GetEngine().Prepared(); });  // an edit may have it prepared anew
    if (!scene) return CDone{};
    return CDriveExport(model, view).Run();
}
