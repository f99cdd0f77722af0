// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "base/CResult.h"

struct sqlite3;

/** Marks a SQLite file as a store of models ("OrbM"). */
constexpr std::uint32_t kSqliteApplicationId = 0x4F72624D;

/** What a path leads to, as far as it can be told without opening it. Unreadable: no regular file, or one that may not be
 * asked for. */
enum class ESqliteFile { Missing, Empty, Something };
[[nodiscard]] CResult<ESqliteFile> ProbeSqliteFile(const std::string& path);

/** BadFormat unless the file that was just opened is empty or a store of models. To be called before the first statement, as
 * SQLite neither reads nor writes a file before it. The bytes are read through SQLite's own descriptor: whoever opens
 * the file beside SQLite and closes it again takes all locks from the connections that this process has to it (POSIX), and
 * another process may then delete the log that they write. */
[[nodiscard]] CStatus CheckSqliteFile(sqlite3* database, const std::string& path);
