// SPDX-License-Identifier: MIT
#include "modeldb/database/sqlite_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

#include "base/byte_order.h"
#include "base/text/lng.h"
#include "files/CFileDescriptor.h"
#include "files/system_error.h"

namespace {

constexpr std::string_view kMagic{"SQLite format 3\0", 16};
constexpr std::size_t kApplicationIdAt = 68;  ///< by SQLite's file format

CError CannotRead(const std::string& path, int errorNumber) {
    return {EErrorCode::Unreadable, SystemErrorText(errorNumber), path};
}

}  // namespace

CResult<ESqliteFile> ProbeSqliteFile(const std::string& path) {
    struct stat info = {};
    if (::stat(path.c_str(), &info) != 0) {
        if (errno == ENOENT) return ESqliteFile::Missing;
        return CannotRead(path, errno);
    }
    if (!S_ISREG(info.st_mode)) return CannotRead(path, S_ISDIR(info.st_mode) ? EISDIR : ENXIO);
    const CFileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.IsOpen()) return CannotRead(path, errno);
    std::array<std::byte, 100> header{};
    const ssize_t got = ::read(file.Get(), header.data(), header.size());
    if (got < 0) return CannotRead(path, errno);
    if (got == 0) return ESqliteFile::Empty;
    const std::string_view magic(reinterpret_cast<const char*>(header.data()), kMagic.size());
    if (magic != kMagic || byte_order::Be32(header, kApplicationIdAt) != kSqliteApplicationId)
        return CError{EErrorCode::BadFormat, lng::Mark("the file is no model store"), path};
    return ESqliteFile::Ours;
}
