// SPDX-License-Identifier: MIT
#include "modeldb/database/postgres_errors.h"

#include "base/text/lng.h"

namespace {

struct CMeaning {
    std::string_view state;  ///< or the beginning of it
    EErrorCode error;
    const char* message;
};

constexpr CMeaning kMeanings[] = {
    {"53100", EErrorCode::NoSpace, lng::Mark("the disk is full")},
    {"53", EErrorCode::Busy, lng::Mark("the database server has too much to do")},
    {"08", EErrorCode::Busy, lng::Mark("the database server cannot be reached")},
    {"57P", EErrorCode::Busy, lng::Mark("the database server cannot be reached")},
    {"57014", EErrorCode::Busy, lng::Mark("the model store is in use by others for too long")},
    {"55P03", EErrorCode::Busy, lng::Mark("the model store is in use by others for too long")},
    {"40", EErrorCode::Busy, lng::Mark("the model store is in use by others for too long")},
    {"25006", EErrorCode::WriteFailed, lng::Mark("the model store may only be read")},
    {"42501", EErrorCode::WriteFailed, lng::Mark("the database server does not allow it")},
    {"28", EErrorCode::Unreadable, lng::Mark("the database server refuses the login")},
    {"3D000", EErrorCode::NotFound, lng::Mark("there is no such database")},
    {"23505", EErrorCode::Exists, lng::Mark("it is there already")},
    {"42P07", EErrorCode::Exists, lng::Mark("the database has tables of another program")},
    {"XX00", EErrorCode::BadFormat, lng::Mark("the model store is damaged")},
};

}  // namespace

CError PostgresError(std::string_view sqlState, std::string_view where) {
    if (sqlState.empty()) sqlState = "08";
    for (const CMeaning& meaning : kMeanings)
        if (sqlState.starts_with(meaning.state)) return {meaning.error, meaning.message, std::string(where)};
    return {EErrorCode::BadFormat, "PostgreSQL: SQLSTATE " + std::string(sqlState), std::string(where)};
}

bool IsConflict(std::string_view sqlState) {
    // 23503 and 23505: what a row refers to went, or the row came, between our look and our change.
    return sqlState.starts_with("40") || sqlState == "23503" || sqlState == "23505";
}

bool IsUnreachable(const CError& error) {
    return error.code == EErrorCode::Busy && error.message == PostgresError("08", {}).message;
}
