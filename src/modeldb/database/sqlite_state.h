// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "modeldb/database/CDatabase.h"

struct sqlite3;

/** The state that a database in WAL mode is in now, as all its processes see it: the header of the log's index, which is in shared
 * memory and changes with each commit (https://www.sqlite.org/walformat.html, section 2.1). SQLite itself tells by comparing it whether
 * what it has read before still holds. No lock is taken and nothing is read from the disk. Nothing: it is being written, or
 * the index is not there. To be asked of a database in WAL mode alone: another one would get an index. */
[[nodiscard]] std::optional<CDatabase::CStateMark> SqliteStateMark(sqlite3* database);
