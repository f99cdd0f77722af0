// SPDX-License-Identifier: MIT
#include "modeldb/store/CBlobWriter.h"

#include <algorithm>
#include <optional>

#include "base/text/lng.h"
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/store/CModelStore.h"
#include "modeldb/store/blob_rows.h"

namespace {

/** Cuts what is kept into parts, and hands those that are too many to the store. */
class CPartSink final : public CByteSink {
  public:
    explicit CPartSink(CDatabase* database) : m_database(database) {}

    CStatus Take(std::span<const std::byte> piece) override {
        stored += piece.size();
        while (!piece.empty()) {
            if (parts.empty() || parts.back().size() == store_limits::kPartBytes)
                if (CStatus room = AddPart(); !room) return room;
            std::vector<std::byte>& part = parts.back();
            const std::size_t count = std::min(piece.size(), store_limits::kPartBytes - part.size());
            part.insert(part.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
            piece = piece.subspan(count);
        }
        return CDone{};
    }
    /** Writes the parts that are held to the store. */
    CStatus Spill() {
        CStatus spilled = m_database->Change([&]() -> CStatus {
            std::int64_t id = stagedId;
            if (id == 0) {
                const CResult<std::int64_t> staged = blob_rows::Stage(*m_database);
                if (!staged) return staged.Error();
                id = staged.Value();
            }
            m_newId = id;
            return blob_rows::AddParts(*m_database, id, m_spilled, parts);
        });
        if (!spilled) return spilled;
        stagedId = m_newId;
        m_spilled += parts.size();
        parts.clear();
        return CDone{};
    }

    std::vector<std::vector<std::byte>> parts;
    std::uint64_t stored = 0;
    std::int64_t stagedId = 0;

  private:
    CStatus AddPart() {
        if (m_database && parts.size() == CBlobWriter::kHeldBytes / store_limits::kPartBytes)
            if (CStatus spilled = Spill(); !spilled) return spilled;
        parts.emplace_back();
        return CDone{};
    }

    CDatabase* m_database;
    std::int64_t m_newId = 0;
    std::size_t m_spilled = 0;
};

}  // namespace

struct CBlobWriter::CState {
    explicit CState(CModelStore* owner)
        : store(owner), sink(owner ? owner->m_database.get() : nullptr), packer(sink) {}

    CModelStore* store;
    CPartSink sink;
    CBytePacker packer;
    CBlobHasher hasher;
    std::uint64_t size = 0;
    std::uint32_t crc = 0;
};

CBlobWriter::CBlobWriter(CModelStore* store) : m_state(std::make_unique<CState>(store)) {}
CBlobWriter::CBlobWriter(CBlobWriter&&) noexcept = default;

CBlobWriter::~CBlobWriter() {
    if (!m_state || m_state->sink.stagedId == 0) return;
    CNewBlob staged;
    staged.stagedId = m_state->sink.stagedId;
    m_state->store->Discard(staged);
}

CStatus CBlobWriter::Take(std::span<const std::byte> piece) {
    m_state->size += piece.size();
    if (m_state->size > store_limits::kBlobBytes)
        return CError{EErrorCode::TooLarge, lng::Mark("the file is too large"), {}};
    m_state->hasher.Add(piece);
    m_state->crc = CalcCrc(piece, m_state->crc);
    return m_state->packer.Add(piece);
}

CResult<CNewBlob> CBlobWriter::Finish() {
    const CResult<EBlobCodec> codec = m_state->packer.Finish();
    if (!codec) return codec.Error();
    CPartSink& sink = m_state->sink;
    if (sink.stagedId != 0)
        if (CStatus spilled = sink.Spill(); !spilled) return spilled.Error();
    CNewBlob blob;
    blob.facts = {m_state->hasher.Finish(), m_state->size, sink.stored, codec.Value()};
    blob.crc = m_state->crc;
    blob.parts = std::move(sink.parts);
    blob.stagedId = sink.stagedId;
    sink.stagedId = 0;
    return blob;
}

CResult<CNewBlob> CBlobWriter::Write(CModelStore* store, std::span<const std::byte> bytes) {
    CBlobWriter writer(store);
    if (CStatus taken = writer.Take(bytes); !taken) return taken.Error();
    return writer.Finish();
}

CResult<CNewBlob> CBlobWriter::Write(CModelStore* store, CByteSource& source) {
    CBlobWriter writer(store);
    std::vector<std::byte> room(64 << 10);
    for (;;) {
        const CResult<std::size_t> got = source.Give(room);
        if (!got) return got.Error();
        if (got.Value() == 0) return writer.Finish();
        if (CStatus taken = writer.Take(std::span(room).first(got.Value())); !taken) return taken.Error();
    }
}
