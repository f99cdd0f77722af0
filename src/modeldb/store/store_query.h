// SPDX-License-Identifier: MIT
#pragma once

#include <ctime>
#include <string>
#include <utility>

#include "base/CResult.h"
#include "modeldb/database/CDatabase.h"

/** What the store's sources share when they talk to the database. */
namespace store_query {

/** A statement of which only the outcome counts. */
[[nodiscard]] inline CStatus Done(const CResult<std::int64_t>& changed) {
    if (!changed) return changed.Error();
    return CDone{};
}

/** A value that work fills, anew in each try. how: CDatabase::Read, Look or Change. */
template <class T, class Fill>
[[nodiscard]] CResult<T> Gather(CDatabase& database, CStatus (CDatabase::*how)(const CDatabase::CWork&),
                                Fill fill) {
    T value{};
    CStatus done = (database.*how)([&]() -> CStatus {
        value = T{};
        return fill(value);
    });
    if (!done) return done.Error();
    return value;
}

/** The error for what is not there. */
[[nodiscard]] inline CError Missing(const char* message) {
    return {EErrorCode::NotFound, message, {}};
}

/** Seconds since 1970. */
[[nodiscard]] inline std::int64_t Now() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

}  // namespace store_query
