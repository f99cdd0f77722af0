// SPDX-License-Identifier: MIT
#include "modeldb/store/blob_rows.h"

#include "base/text/lng.h"
#include "modeldb/store/store_query.h"

namespace blob_rows {

using store_query::Done;

namespace {

CResult<std::int64_t> IdFrom(CDatabase& database, std::string_view sql,
                             std::initializer_list<CDbValue> values) {
    std::int64_t id = 0;
    const auto done = database.Run(sql, values, [&](const CDbRow& row) -> CStatus {
        id = row.Int(0);
        return CDone{};
    });
    if (!done) return done.Error();
    return id;
}

CResult<std::int64_t> Publish(CDatabase& database, const CNewBlob& blob) {
    const auto changed = database.Run(
        "UPDATE blobs SET sha256 = $1, size = $2, stored = $3, codec = $4, touched = $5 WHERE id = $6 AND "
        "sha256 IS NULL",
        {std::span<const std::byte>(blob.facts.hash.bytes), static_cast<std::int64_t>(blob.facts.size),
         static_cast<std::int64_t>(blob.facts.stored), static_cast<std::int64_t>(blob.facts.codec),
         store_query::Now(), blob.stagedId});
    if (!changed) return changed.Error();
    if (changed.Value() == 1) return blob.stagedId;
    return CError{EErrorCode::Busy, lng::Mark("the transfer took too long"), {}};
}

CResult<std::int64_t> Insert(CDatabase& database, const CNewBlob& blob) {
    CResult<std::int64_t> id = IdFrom(
        database,
        "INSERT INTO blobs(sha256, size, stored, codec, touched) VALUES($1, $2, $3, $4, $5) RETURNING id",
        {std::span<const std::byte>(blob.facts.hash.bytes), static_cast<std::int64_t>(blob.facts.size),
         static_cast<std::int64_t>(blob.facts.stored), static_cast<std::int64_t>(blob.facts.codec),
         store_query::Now()});
    if (!id) return id;
    if (CStatus added = AddParts(database, id.Value(), 0, blob.parts); !added) return added.Error();
    return id;
}

}  // namespace

CBlobHash HashOf(const CDbRow& row, int column) {
    return CBlobHash::FromBytes(row.Bytes(column)).value_or(CBlobHash{});
}

CStoredBlob FactsOf(const CDbRow& row, int firstColumn) {
    CStoredBlob facts;
    facts.hash = HashOf(row, firstColumn);
    facts.size = static_cast<std::uint64_t>(row.Int(firstColumn + 1));
    facts.stored = static_cast<std::uint64_t>(row.Int(firstColumn + 2));
    facts.codec = row.Int(firstColumn + 3) == 0 ? EBlobCodec::Plain : EBlobCodec::Zstd;
    return facts;
}

CResult<std::optional<CBlobRow>> Find(CDatabase& database, const CBlobHash& hash) {
    std::optional<CBlobRow> found;
    const auto done =
        database.Run("SELECT id, sha256, size, stored, codec FROM blobs WHERE sha256 = $1",
                     {std::span<const std::byte>(hash.bytes)}, [&](const CDbRow& row) -> CStatus {
                         found = CBlobRow{row.Int(0), FactsOf(row, 1)};
                         return CDone{};
                     });
    if (!done) return done.Error();
    return found;
}

CResult<std::int64_t> Stage(CDatabase& database) {
    return IdFrom(database,
                  "INSERT INTO blobs(size, stored, codec, touched) VALUES(0, 0, 0, $1) RETURNING id",
                  {store_query::Now()});
}

CStatus AddParts(CDatabase& database, std::int64_t id, std::size_t first, std::span<const CPart> parts) {
    for (const CPart& part : parts) {
        const auto added = database.Run(
            "INSERT INTO blob_parts(blob, pos, data) VALUES($1, $2, $3) ON CONFLICT(blob, pos) DO NOTHING",
            {id, static_cast<std::int64_t>(first++), std::span<const std::byte>(part)});
        if (!added) return added.Error();
    }
    return CDone{};
}

CResult<std::int64_t> Put(CDatabase& database, const CNewBlob& blob) {
    const CResult<std::optional<CBlobRow>> known = Find(database, blob.facts.hash);
    if (!known) return known.Error();
    if (!known.Value()) return blob.stagedId != 0 ? Publish(database, blob) : Insert(database, blob);
    if (CStatus dropped = DropStaged(database, blob); !dropped) return dropped.Error();
    return known.Value()->id;
}

CStatus DropStaged(CDatabase& database, const CNewBlob& blob) {
    if (blob.stagedId == 0) return CDone{};
    return Done(database.Run("DELETE FROM blobs WHERE id = $1 AND sha256 IS NULL", {blob.stagedId}));
}

CStatus DropUnused(CDatabase& database, std::int64_t id) {
    return Done(
        database.Run("DELETE FROM blobs WHERE id = $1 AND NOT EXISTS(SELECT 1 FROM models WHERE blob = $1)"
                     " AND NOT EXISTS(SELECT 1 FROM models WHERE preview = $1)"
                     " AND NOT EXISTS(SELECT 1 FROM textures WHERE blob = $1)",
                     {id}));
}

}  // namespace blob_rows
