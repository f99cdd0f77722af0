// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "base/CResult.h"

struct sqlite3;

/** What a failure of SQLite means. where: the file. */
[[nodiscard]] CError SqliteError(sqlite3* database, int code, std::string_view where);
