// SPDX-License-Identifier: MIT
#include "modeldb/server/CBlobDesk.h"

#include "modeldb/bytes/pack_bytes.h"
#include "modeldb/server/byte_ranges.h"
#include "modeldb/server/server_answers.h"

namespace {

std::string NameOf(const CBlobAddress& address) {
    return address.hash.ToHex() + (address.form == EBlobForm::Stored ? ".zst" : "");
}

class CWriteSink final : public CByteSink {
  public:
    explicit CWriteSink(const CHotFolder::CWrite& write) : m_write(write) {}
    CStatus Take(std::span<const std::byte> piece) override { return m_write(piece); }

  private:
    const CHotFolder::CWrite& m_write;
};

/** Makes the hash of what it takes. */
class CHashSink final : public CByteSink {
  public:
    CStatus Take(std::span<const std::byte> piece) override {
        hasher.Add(piece);
        return CDone{};
    }
    CBlobHasher hasher;
};

/** Writes packed bytes as they are, and unpacks them to see whether they are the right ones. */
class CCheckedSink final : public CByteSink {
  public:
    CCheckedSink(const CStoredBlob& facts, const CHotFolder::CWrite& write)
        : m_facts(facts), m_write(write), m_unpacker(facts.codec, facts.size, m_plain) {}
    CStatus Take(std::span<const std::byte> piece) override {
        if (CStatus unpacked = m_unpacker.Take(piece); !unpacked) return unpacked;
        return m_write(piece);
    }
    [[nodiscard]] CStatus Finish() {
        if (CStatus complete = m_unpacker.Finish(); !complete) return complete;
        if (m_plain.hasher.Finish() == m_facts.hash) return CDone{};
        return CError{EErrorCode::BadFormat, "the model store is damaged", m_facts.hash.ToHex()};
    }

  private:
    const CStoredBlob& m_facts;
    const CHotFolder::CWrite& m_write;
    CHashSink m_plain;
    CByteUnpacker m_unpacker;  // after m_plain
};

CStatus WriteStored(CModelStore& store, const CBlobHash& hash, const CHotFolder::CWrite& write) {
    const CResult<CStoredBlob> facts = store.Blob(hash);
    if (!facts) return facts.Error();
    if (facts.Value().codec != EBlobCodec::Zstd)
        return CError{EErrorCode::NotFound, "these bytes are kept as they are", {}};
    CCheckedSink sink(facts.Value(), write);
    if (CStatus read = store.ReadStored(hash, 0, facts.Value().stored, sink); !read) return read;
    return sink.Finish();
}

}  // namespace

void CBlobDesk::Answer(const CBlobAddress& address, CHttpRequest request, CHttpReply reply) {
    const std::string name = NameOf(address);
    if (const std::optional<CHotFile> file = m_folder.Find(name); file && file->isFresh) {
        reply.Send(byte_ranges::Answer(request, *file, wire_address::BlobTag(address.hash, address.form),
                                       m_isPrivate));
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        std::vector<CWaiting>& waiting = m_waiting[name];
        waiting.push_back({std::move(request), std::move(reply)});
        if (waiting.size() > 1) return;
    }
    if (m_workers.Post([this, address, name] { Fetch(address, name); })) return;
    for (CWaiting& waiting : TakeWaiting(name)) waiting.reply.Send(server_answers::Refusal(503));
}

std::vector<CBlobDesk::CWaiting> CBlobDesk::TakeWaiting(const std::string& name) {
    const std::lock_guard lock(m_mutex);
    auto taken = m_waiting.extract(name);
    return taken ? std::move(taken.mapped()) : std::vector<CWaiting>();
}

void CBlobDesk::Fetch(const CBlobAddress& address, const std::string& name) {
    CResult<CHotFile> file = CError{EErrorCode::Unreadable, "not enough memory", {}};
    try {
        file = Get(address, name);
    } catch (const std::exception&) {
        // Those who wait are answered all the same.
    }
    const std::string tag = wire_address::BlobTag(address.hash, address.form);
    for (CWaiting& waiting : TakeWaiting(name))
        waiting.reply.Send(file ? byte_ranges::Answer(waiting.request, file.Value(), tag, m_isPrivate)
                                : server_answers::Refusal(file.Error()));
}

CResult<CHotFile> CBlobDesk::Get(const CBlobAddress& address, const std::string& name) {
    std::optional<CHotFile> file = m_folder.Find(name);
    if (!file) return Fill(address, name);
    if (file->isFresh) return *file;
    if (CStatus there = Confirm(address, name); !there) return there.Error();
    return *file;
}

CStatus CBlobDesk::Confirm(const CBlobAddress& address, const std::string& name) {
    const CResult<CStoredBlob> blob =
        m_stores.Run([&](CModelStore& store) { return store.Blob(address.hash); });
    if (blob) {
        m_folder.Confirm(name);
    } else if (blob.Error().code == EErrorCode::NotFound) {
        m_folder.Remove(name);
        return blob.Error();
    }
    return CDone{};
}

CResult<CHotFile> CBlobDesk::Fill(const CBlobAddress& address, const std::string& name) {
    return m_stores.Run([&](CModelStore& store) {
        return m_folder.Put(name, [&](const CHotFolder::CWrite& write) -> CStatus {
            if (address.form == EBlobForm::Stored) return WriteStored(store, address.hash, write);
            CWriteSink sink(write);
            return store.ReadBytes(address.hash, sink);
        });
    });
}
