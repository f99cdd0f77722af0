// SPDX-License-Identifier: MIT
#include "thumbnails/private_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>

#include "files/CFileDescriptor.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"

namespace private_file {
namespace {

bool WriteAll(int to, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t put = ::write(to, bytes.data(), bytes.size());
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(put));
    }
    return true;
}

/** Of no other process and no other thread. */
std::string TemporaryName() {
    static std::atomic<unsigned> count = 0;
    return ".orbivue-" + std::to_string(::getpid()) + "-" + std::to_string(count++);
}

}  // namespace

bool MakeFolder(const std::string& folder) {
    return ::mkdir(folder.c_str(), 0700) == 0 || file_util_ex::DoesFolderExist(folder);
}

CStatus Write(const std::string& folder, const std::string& name, std::span<const std::byte> bytes) {
    const std::string temporary = file_util_ex::MakePath(folder, TemporaryName());
    const std::string path = file_util_ex::MakePath(folder, name);
    (void)::unlink(temporary.c_str());  // of a process that had this number and was killed
    CFileDescriptor file(
        ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.IsOpen()) return CError{EErrorCode::WriteFailed, SystemErrorText(errno), path};
    if (WriteAll(file.Get(), bytes) && file.Close() && std::rename(temporary.c_str(), path.c_str()) == 0)
        return CDone{};
    const int failed = errno;
    (void)::unlink(temporary.c_str());
    return CError{EErrorCode::WriteFailed, SystemErrorText(failed), path};
}

}  // namespace private_file
