// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

/** The folder in which exports to Google Drive are made ready for the helper program: "Orbivue_GDriveTmp" in the user's
 * cache folder, private (0700). Each export has two folders in it, "model_N" and "upload_N".
 *
 * It lies in the cache folder (Dir_Cache of wxStandardPaths) because that is the user's own, is for what can be made
 * again, and outlives this process: the helper, and whoever looks at the folder that it has opened, may need it after the
 * program has ended. The process's temporary folder goes with the process. The folder for everybody's temporary files
 * would do with a name that nobody can guess, but this name is known, so anybody could be there first.
 *
 * No link is followed: where the area is a link, or somebody else's, nothing is made and nothing removed; a link in it
 * is removed itself. Paths are UTF-8. */
class CDriveWorkArea {
  public:
    using CTime = std::chrono::system_clock::time_point;

    /** Opens the area in a folder, making both when missing, and takes the rights of others away. */
    [[nodiscard]] static CResult<CDriveWorkArea> Open(const std::string& parent);

    /** Removes each sub-folder that IsOver, with all its contents. What cannot be removed stays. */
    void RemoveOld(CTime now) const;
    /** True for what is at least 24 hours old, and where its time of creation is not known. Whole minutes count, then
     * whole hours, then whole days. */
    [[nodiscard]] static bool IsOver(std::optional<CTime> created, CTime now);

    /** Makes "model_N", empty. N: the low 32 bits of the milliseconds, or the next number that nothing in the area has. */
    [[nodiscard]] CStatus MakeModelFolder(std::chrono::milliseconds localTime);
    /** Makes "upload_N" with the model folder's number. */
    [[nodiscard]] CStatus MakeUploadFolder();
    [[nodiscard]] std::string ModelFolder() const;
    [[nodiscard]] std::string UploadFolder() const;

  private:
    CDriveWorkArea(std::string path, CFileDescriptor folder);
    /** What the system calls the creation of a folder: on Unix the last change of its status, as in wxFileName::GetTimes.
     * That is never before its creation, so what is being written is never taken for old. */
    [[nodiscard]] std::optional<CTime> CreationTime(const std::string& name) const;
    [[nodiscard]] CStatus Make(const std::string& name) const;
    [[nodiscard]] bool IsTaken(const std::string& name) const;

    std::string m_path;
    CFileDescriptor m_folder;  ///< the area, whatever gets its name later
    std::uint32_t m_number = 0;
};

/** Now as the milliseconds that a clock on the wall would have counted since 1970. */
[[nodiscard]] std::chrono::milliseconds LocalMilliseconds(CDriveWorkArea::CTime now);
