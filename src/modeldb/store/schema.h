// SPDX-License-Identifier: MIT
#pragma once

#include "base/CResult.h"

class CDatabase;

/** The forms that the tables of a store have had. Each store carries the number of its own; a newer program brings it up to
 * date step by step, each step in one transaction:
 * 1: groups, models, textures, bytes, tokens;
 * 2: models.folded, and an index for searching it where the database can make one. */
constexpr int kStoreVersion = 2;

/** The number of a database's form; 0 where it holds no store. */
[[nodiscard]] CResult<int> StoreVersionOf(CDatabase& database);
/** Makes the tables, or brings them up to date. Unsupported: they are newer than this program. `to`: for tests. */
[[nodiscard]] CStatus UpgradeStore(CDatabase& database, int to = kStoreVersion);
/** BadFormat where an SQLite file has anything but what a store has: whoever made the file could let a view, a trigger, a computed
 * column or an index of expressions go on for ever. To be called before any table is asked. */
[[nodiscard]] CStatus CheckSchema(CDatabase& database);
/** True where names are found by an index of SQLite's, which takes texts of three characters or more. */
[[nodiscard]] CResult<bool> HasTrigramTable(CDatabase& database);
