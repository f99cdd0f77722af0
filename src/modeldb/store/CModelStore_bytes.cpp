// SPDX-License-Identifier: MIT
#include <algorithm>

#include "base/text/lng.h"
#include "modeldb/store/CModelStore.h"
#include "modeldb/store/blob_rows.h"
#include "modeldb/store/store_query.h"

namespace {

constexpr std::uint64_t kPart = store_limits::kPartBytes;

CError NoBytes() {
    return store_query::Missing(lng::Mark("there are no such bytes"));
}
CError Damaged(const CDatabase& database) {
    return {EErrorCode::BadFormat, lng::Mark("the model store is damaged"), database.Place()};
}

CResult<blob_rows::CBlobRow> RowOf(CDatabase& database, const CBlobHash& hash) {
    using CFound = std::optional<blob_rows::CBlobRow>;
    const CResult<CFound> row =
        store_query::Gather<CFound>(database, &CDatabase::Read, [&](CFound& value) -> CStatus {
            CResult<CFound> found = blob_rows::Find(database, hash);
            if (!found) return found.Error();
            value = found.Value();
            return CDone{};
        });
    if (!row) return row.Error();
    if (!row.Value()) return NoBytes();
    return *row.Value();
}

/** Hands on the bytes from..to of one part. Each part is asked for by itself, so that a slow taker holds up nobody. */
CStatus ReadPart(CDatabase& database, const blob_rows::CBlobRow& row, std::uint64_t part, std::uint64_t from,
                 std::uint64_t to, CByteSink& sink) {
    bool found = false;
    const std::uint64_t size = std::min(kPart, row.facts.stored - part * kPart);
    CStatus read = database.Read([&] {
        return store_query::Done(database.Run("SELECT data FROM blob_parts WHERE blob = $1 AND pos = $2",
                                              {row.id, static_cast<std::int64_t>(part)},
                                              [&](const CDbRow& answer) -> CStatus {
                                                  found = true;
                                                  const auto bytes = answer.Bytes(0);
                                                  if (bytes.size() != size) return Damaged(database);
                                                  return sink.Take(bytes.subspan(from, to - from));
                                              }));
    });
    if (!read || found) return read;
    return NoBytes();
}

CStatus ReadRange(CDatabase& database, const blob_rows::CBlobRow& row, std::uint64_t offset,
                  std::uint64_t length, CByteSink& sink) {
    const std::uint64_t end = offset + std::min(length, row.facts.stored - offset);
    while (offset < end) {
        const std::uint64_t part = offset / kPart;
        const std::uint64_t to = std::min(end, (part + 1) * kPart);
        if (CStatus read = ReadPart(database, row, part, offset - part * kPart, to - part * kPart, sink);
            !read)
            return read;
        offset = to;
    }
    return CDone{};
}

class CHashingSink final : public CByteSink {
  public:
    explicit CHashingSink(CByteSink& next) : m_next(next) {}
    CStatus Take(std::span<const std::byte> piece) override {
        hasher.Add(piece);
        return m_next.Take(piece);
    }
    CBlobHasher hasher;

  private:
    CByteSink& m_next;
};

}  // namespace

CResult<CStoredBlob> CModelStore::Blob(const CBlobHash& hash) {
    const CResult<blob_rows::CBlobRow> row = RowOf(*m_database, hash);
    if (!row) return row.Error();
    return row.Value().facts;
}

CStatus CModelStore::ReadStored(const CBlobHash& hash, std::uint64_t offset, std::uint64_t length,
                                CByteSink& sink) {
    const CResult<blob_rows::CBlobRow> row = RowOf(*m_database, hash);
    if (!row) return row.Error();
    if (offset >= row.Value().facts.stored) return CDone{};
    return ReadRange(*m_database, row.Value(), offset, length, sink);
}

CStatus CModelStore::ReadBytes(const CBlobHash& hash, CByteSink& sink) {
    const CResult<blob_rows::CBlobRow> row = RowOf(*m_database, hash);
    if (!row) return row.Error();
    const CStoredBlob& facts = row.Value().facts;
    CHashingSink hashing(sink);
    CByteUnpacker unpacker(facts.codec, facts.size, hashing);
    if (CStatus read = ReadRange(*m_database, row.Value(), 0, facts.stored, unpacker); !read) return read;
    if (CStatus complete = unpacker.Finish(); !complete) return complete;
    return hashing.hasher.Finish() == hash ? CStatus(CDone{}) : Damaged(*m_database);
}
