// SPDX-License-Identifier: MIT
#include "export/drive/CDriveWorkArea.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <utility>
#include <vector>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"

using file_util_ex::MakePath;

namespace {

constexpr std::string_view kAreaName = "Orbivue_GDriveTmp";

CError Failure(int errorNumber, const std::string& path) {
    return {EErrorCode::WriteFailed, SystemErrorText(errorNumber), path};
}

std::string ModelName(std::uint32_t number) {
    return "model_" + std::to_string(number);
}
std::string UploadName(std::uint32_t number) {
    return "upload_" + std::to_string(number);
}

}  // namespace

CDriveWorkArea::CDriveWorkArea(std::string path, CFileDescriptor folder)
    : m_path(std::move(path)), m_folder(std::move(folder)) {}

CResult<CDriveWorkArea> CDriveWorkArea::Open(const std::string& parent) {
    const std::string path = MakePath(parent, kAreaName);
    (void)file_util_ex::Mkdir(parent);  // opening the area tells
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) return Failure(errno, path);
    CFileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat info = {};
    if (!folder.IsOpen() || ::fstat(folder.Get(), &info) != 0) return Failure(errno, path);
    if (info.st_uid != ::geteuid()) return Failure(EACCES, path);
    if ((info.st_mode & 0777U) != 0700 && ::fchmod(folder.Get(), 0700) != 0) return Failure(errno, path);
    return CDriveWorkArea(path, std::move(folder));
}

std::optional<CDriveWorkArea::CTime> CDriveWorkArea::CreationTime(const std::string& name) const {
    struct stat info = {};
    if (::fstatat(m_folder.Get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
    return CTime(std::chrono::seconds(info.st_ctim.tv_sec));
}

bool CDriveWorkArea::IsOver(std::optional<CTime> created, CTime now) {
    if (!created) return true;
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(now - *created).count();
    const auto hours = minutes / 60;
    const auto days = hours / 24;
    return days > 0;
}

void CDriveWorkArea::RemoveOld(CTime now) const {
    // By the open folder: its name may lead elsewhere by now.
    const std::string area = "/proc/self/fd/" + std::to_string(m_folder.Get());
    std::vector<std::string> folders;
    (void)file_util_ex::GetSubDirs(area, folders);
    for (const std::string& folder : folders) {
        if (!IsOver(CreationTime(file_util_ex::GetFileName(folder)), now)) continue;
        if (!file_util_ex::Rmdir(folder))
            file_util_ex::DeleteFileW(folder);  // a link goes, not what it leads to
    }
}

CStatus CDriveWorkArea::Make(const std::string& name) const {
    if (::mkdirat(m_folder.Get(), name.c_str(), 0700) != 0) return Failure(errno, MakePath(m_path, name));
    return CDone{};
}

bool CDriveWorkArea::IsTaken(const std::string& name) const {
    struct stat info = {};
    return ::fstatat(m_folder.Get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
}

CStatus CDriveWorkArea::MakeModelFolder(std::chrono::milliseconds localTime) {
    constexpr int kMostTries = 100;  // a number comes again after 49 days, and when clocks are put back
    m_number = static_cast<std::uint32_t>(localTime.count());
    for (int i = 0; i < kMostTries && (IsTaken(ModelName(m_number)) || IsTaken(UploadName(m_number))); ++i)
        ++m_number;
    return Make(ModelName(m_number));
}

CStatus CDriveWorkArea::MakeUploadFolder() {
    return Make(UploadName(m_number));
}

std::string CDriveWorkArea::ModelFolder() const {
    return MakePath(m_path, ModelName(m_number));
}
std::string CDriveWorkArea::UploadFolder() const {
    return MakePath(m_path, UploadName(m_number));
}

std::chrono::milliseconds LocalMilliseconds(CDriveWorkArea::CTime now) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    (void)::localtime_r(&seconds, &local);
    return std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()) +
           std::chrono::seconds(local.tm_gmtoff);
}
