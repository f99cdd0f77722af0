// SPDX-License-Identifier: MIT
#include "modeldb/database/sqlite_errors.h"

#include <sqlite3.h>

#include <cerrno>
#include <string>

#include "base/text/lng.h"
#include "files/system_error.h"

namespace {

CError SystemFailure(int errorNumber, std::string_view where) {
    const bool full = errorNumber == ENOSPC || errorNumber == EDQUOT;
    return {
        full ? EErrorCode::NoSpace : EErrorCode::WriteFailed,
        errorNumber != 0 ? SystemErrorText(errorNumber) : lng::Mark("the disk does not do what it should"),
        std::string(where)};
}

struct CMeaning {
    int code;
    EErrorCode error;
    const char* message;
};

constexpr CMeaning kMeanings[] = {
    {SQLITE_FULL, EErrorCode::NoSpace, lng::Mark("the disk is full")},
    {SQLITE_BUSY, EErrorCode::Busy, lng::Mark("the model store is in use by others for too long")},
    {SQLITE_LOCKED, EErrorCode::Busy, lng::Mark("the model store is in use by others for too long")},
    {SQLITE_READONLY, EErrorCode::WriteFailed, lng::Mark("the model store may only be read")},
    {SQLITE_PERM, EErrorCode::Unreadable, lng::Mark("the model store may not be opened")},
    {SQLITE_AUTH, EErrorCode::Unreadable, lng::Mark("the model store may not be opened")},
    {SQLITE_NOTADB, EErrorCode::BadFormat, lng::Mark("the file is no model store")},
    {SQLITE_CORRUPT, EErrorCode::BadFormat, lng::Mark("the model store is damaged")},
    {SQLITE_TOOBIG, EErrorCode::TooLarge, lng::Mark("too large for the model store")},
    {SQLITE_NOMEM, EErrorCode::TooLarge, lng::Mark("not enough memory")},
};

/** True where a reader would have to write: he, too, takes part in the log's index. */
bool LacksFolder(int code) {
    return code == SQLITE_READONLY_CANTINIT || code == SQLITE_READONLY_DIRECTORY ||
           code == SQLITE_READONLY_RECOVERY || code == SQLITE_READONLY_CANTLOCK;
}

}  // namespace

CError SqliteError(sqlite3* database, int code, std::string_view where) {
    const int kind = code & 0xFF;
    if (LacksFolder(code))
        return {EErrorCode::Unreadable,
                lng::Mark("the folder of the model store may not be written to, which reading needs, too"),
                std::string(where)};
    const int errorNumber = database ? sqlite3_system_errno(database) : 0;
    if (kind == SQLITE_IOERR) return SystemFailure(errorNumber, where);
    if (kind == SQLITE_CANTOPEN) {
        const bool told = errorNumber != 0;
        return {EErrorCode::Unreadable,
                told ? SystemErrorText(errorNumber) : lng::Mark("the model store may not be opened"),
                std::string(where)};
    }
    for (const CMeaning& meaning : kMeanings)
        if (meaning.code == kind) return {meaning.error, meaning.message, std::string(where)};
    // SQLite's own text may hold a name of the schema, never a bound value.
    return {EErrorCode::BadFormat, std::string("SQLite: ") + sqlite3_errstr(code), std::string(where)};
}
