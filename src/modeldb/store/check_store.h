// SPDX-License-Identifier: MIT
#pragma once

#include "base/CResult.h"
#include "modeldb/records/store_records.h"

class CDatabase;

/** The parts of CModelStore::Check that ask the database alone: counts, the form of a SQLite file (isFull: its indices,
 * too), references, counters, and the sizes of parts. Call it within Look. */
[[nodiscard]] CStatus CheckTables(CDatabase& database, bool isFull, CCheckReport& report);
/** Adds a fault; of many only the first ones are kept. */
void NoteFault(CCheckReport& report, std::string fault);
