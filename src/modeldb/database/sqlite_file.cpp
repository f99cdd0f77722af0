// SPDX-License-Identifier: MIT
#include "modeldb/database/sqlite_file.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <string_view>

#include "base/byte_order.h"
#include "base/text/lng.h"
#include "files/system_error.h"
#include "modeldb/database/sqlite_errors.h"

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
    return info.st_size == 0 ? ESqliteFile::Empty : ESqliteFile::Something;
}

CStatus CheckSqliteFile(sqlite3* database, const std::string& path) {
    sqlite3_file* file = nullptr;
    if (const int code = sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file);
        code != SQLITE_OK)
        return SqliteError(database, code, path);
    sqlite3_int64 size = 0;
    if (file == nullptr || file->pMethods == nullptr || file->pMethods->xFileSize(file, &size) != SQLITE_OK)
        return CannotRead(path, EIO);
    if (size == 0) return CDone{};
    std::array<std::byte, 100> header{};
    // A shorter file is filled up with zeros, which the mark is not.
    const int code = file->pMethods->xRead(file, header.data(), static_cast<int>(header.size()), 0);
    if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ) return SqliteError(database, code, path);
    const std::string_view magic(reinterpret_cast<const char*>(header.data()), kMagic.size());
    if (magic != kMagic || byte_order::Be32(header, kApplicationIdAt) != kSqliteApplicationId)
        return CError{EErrorCode::BadFormat, lng::Mark("the file is no model store"), path};
    return CDone{};
}
