// SPDX-License-Identifier: MIT
#include "modeldb/server/work/unnamed_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "files/system_error.h"

namespace {

CError Failure(EErrorCode code) {
    const int number = errno;
    return {number == ENOSPC || number == EDQUOT ? EErrorCode::NoSpace : code, SystemErrorText(number), {}};
}

std::string TemporaryFolder() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    return error ? "/tmp" : folder.native();
}

}  // namespace

CResult<CFileDescriptor> unnamed_file::Make(const std::string& folder) {
    const std::string place = folder.empty() ? TemporaryFolder() : folder;
    CFileDescriptor file(::open(place.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (!file.IsOpen() && (errno == EOPNOTSUPP || errno == EISDIR || errno == ENOENT))
        file = CFileDescriptor(::memfd_create("orbivue", MFD_CLOEXEC));
    if (!file.IsOpen()) return Failure(EErrorCode::WriteFailed);
    return file;
}

CStatus unnamed_file::Append(const CFileDescriptor& file, std::span<const std::byte> bytes) {
    return AppendTo(file.Get(), bytes);
}

CStatus unnamed_file::AppendTo(int descriptor, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t put = ::write(descriptor, bytes.data(), bytes.size());
        if (put < 0 && errno == EINTR) continue;
        if (put < 0) return Failure(EErrorCode::WriteFailed);
        bytes = bytes.subspan(static_cast<std::size_t>(put));
    }
    return CDone{};
}

CResult<CFileDescriptor> unnamed_file::OpenToRead(const CFileDescriptor& file) {
    const std::string path = "/proc/self/fd/" + std::to_string(file.Get());
    CFileDescriptor again(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!again.IsOpen()) return Failure(EErrorCode::Unreadable);
    return again;
}

std::uint64_t unnamed_file::SizeOf(const CFileDescriptor& file) {
    struct stat info = {};
    return ::fstat(file.Get(), &info) == 0 ? static_cast<std::uint64_t>(std::max<off_t>(info.st_size, 0)) : 0;
}
