// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "base/CResult.h"
#include "export/drive/CDriveWorkArea.h"
#include "export/drive/upload_notes.h"

/** Where an export to Google Drive finds things, and what it is about. Narrow text is UTF-8. */
struct CDriveExportPlaces {
    std::string appFolder;    ///< holds "scripts", see std_file_paths::GetAppFolderPath
    std::string cacheFolder;  ///< the user's; the working area lies there
    std::wstring modelName;   ///< the model's file name
};

/** What the export has others do who know the scene and its window. Paths are those of the files to write. */
struct CDriveExportSteps {
    std::function<void(const std::string& path)> writeScreenshot;
    std::function<CStatus(const std::string& path)> writePage;
    /** Beside the page; empty: no archive is wanted. */
    std::function<void(const std::string& pagePath)> writeArchive;
    std::function<CUploadNotes()> makeNotes;
    /** Starts the helper by its command line and waits for its end. */
    std::function<void(const std::wstring& commandLine)> runHelper;
};

/** Makes the shown scene ready in the working area and hands it to the helper program. Where the helper or its template
 * is missing, nothing is made. After a failure what was made stays until it is a day old, and the helper is not started.
 */
[[nodiscard]] CStatus ExportToDrive(const CDriveExportPlaces& places, const CDriveExportSteps& steps,
                                    CDriveWorkArea::CTime now);
