// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/CResult.h"
#include "modeldb/database/CDatabase.h"
#include "modeldb/records/store_records.h"
#include "modeldb/store/CBlobWriter.h"

/** The rows of bytes: what is done to them within a transaction of the caller. */
namespace blob_rows {

using CPart = std::vector<std::byte>;

struct CBlobRow {
    std::int64_t id = 0;
    CStoredBlob facts;
};
[[nodiscard]] CResult<std::optional<CBlobRow>> Find(CDatabase& database, const CBlobHash& hash);
[[nodiscard]] CBlobHash HashOf(const CDbRow& row, int column);
/** The facts in four columns of a row: sha256, size, stored, codec. */
[[nodiscard]] CStoredBlob FactsOf(const CDbRow& row, int firstColumn);

/** A row for bytes that are still being written; its id. */
[[nodiscard]] CResult<std::int64_t> Stage(CDatabase& database);
/** Adds parts to a row, numbered from `first` on. Parts that are there already stay. */
[[nodiscard]] CStatus AddParts(CDatabase& database, std::int64_t id, std::size_t first,
                               std::span<const CPart> parts);
/** The id of these bytes: those that are there already, or else the new ones, which are then complete. */
[[nodiscard]] CResult<std::int64_t> Put(CDatabase& database, const CNewBlob& blob);
/** Deletes what of the blob is staged. */
[[nodiscard]] CStatus DropStaged(CDatabase& database, const CNewBlob& blob);
/** Deletes bytes that neither a model nor a texture has. */
[[nodiscard]] CStatus DropUnused(CDatabase& database, std::int64_t id);

}  // namespace blob_rows
