// SPDX-License-Identifier: MIT
#include "export/drive/drive_export.h"

#include <array>

#include "base/text/lng.h"
#include "export/drive/drive_command_line.h"
#include "files/file_util_ex.h"

using file_util_ex::MakePath;
using file_util_ex::PathFromBytes;

namespace {

CError Missing(const std::string& path) {
    return {EErrorCode::NotFound, lng::Mark("there is no such file or folder"), path};
}

CStatus WriteModelFolder(const CDriveWorkArea& area, const CDriveExportSteps& steps) {
    const std::string folder = area.ModelFolder();
    steps.writeScreenshot(MakePath(folder, "screenshot.jpg"));
    const std::string page = MakePath(folder, "index.html");
    if (CStatus written = steps.writePage(page); !written) return written;
    if (steps.writeArchive) steps.writeArchive(page);
    return WriteUploadNotes(folder, steps.makeNotes());
}

}  // namespace

CStatus ExportToDrive(const CDriveExportPlaces& places, const CDriveExportSteps& steps,
                      CDriveWorkArea::CTime now) {
    const std::string scripts = MakePath(places.appFolder, "scripts");
    const std::string helper = MakePath(scripts, "OrbivueUploadPrepare.exe");
    if (!file_util_ex::DoesFileExist(helper)) return Missing(helper);
    const std::string pageTemplate = MakePath(scripts, "template");
    if (!file_util_ex::DoesFolderExist(pageTemplate)) return Missing(pageTemplate);

    CResult<CDriveWorkArea> opened = CDriveWorkArea::Open(places.cacheFolder);
    if (!opened) return opened.Error();
    CDriveWorkArea& area = opened.Value();
    area.RemoveOld(now);
    if (CStatus made = area.MakeModelFolder(LocalMilliseconds(now)); !made) return made;
    if (CStatus written = WriteModelFolder(area, steps); !written) return written;
    if (CStatus made = area.MakeUploadFolder(); !made) return made;

    const std::array arguments{PathFromBytes(helper), PathFromBytes(area.ModelFolder()),
                               PathFromBytes(pageTemplate), PathFromBytes(area.UploadFolder()),
                               places.modelName};
    steps.runHelper(CommandLineOf(arguments));
    return CDone{};
}
