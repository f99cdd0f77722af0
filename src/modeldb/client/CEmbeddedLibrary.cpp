// SPDX-License-Identifier: MIT
#include "modeldb/client/CEmbeddedLibrary.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/text/lng.h"
#include "modeldb/client/make_user_store.h"
#include "modeldb/protocol/wire_limits.h"

namespace {

CError Cancelled() {
    return {EErrorCode::Cancelled, lng::Mark("cancelled"), {}};
}

/** Fills a span, and tells how far it is. */
class CTargetSink final : public CByteSink {
  public:
    CTargetSink(std::span<std::byte> target, CProgressUnits& units, const std::atomic<bool>& isStopped)
        : m_target(target), m_units(units), m_isStopped(isStopped) {}
    CStatus Take(std::span<const std::byte> piece) override {
        if (piece.size() > m_target.size() - m_filled)
            return CError{EErrorCode::BadFormat, lng::Mark("the model store is damaged"), {}};
        std::ranges::copy(piece, m_target.subspan(m_filled).begin());
        m_filled += piece.size();
        return !m_isStopped && m_units.BytesTo(m_filled) ? CStatus(CDone{}) : CStatus(Cancelled());
    }
    [[nodiscard]] bool IsFull() const { return m_filled == m_target.size(); }

  private:
    std::span<std::byte> m_target;
    CProgressUnits& m_units;
    const std::atomic<bool>& m_isStopped;
    std::size_t m_filled = 0;
};

/** A model on its way into a store; what of it lies there goes again, unless it is added. */
class CStagedModel {
  public:
    CStagedModel(CModelStore& store, CProgressUnits& units, const std::atomic<bool>& isStopped)
        : m_store(store), m_units(units), m_isStopped(isStopped) {}
    CStagedModel(const CStagedModel&) = delete;
    CStagedModel& operator=(const CStagedModel&) = delete;
    ~CStagedModel() {
        m_store.Discard(m_model.file);
        for (const CNewTexture& texture : m_model.textures) m_store.Discard(texture.blob);
    }

    CStatus Add(const CModelUpload& upload) {
        if (CStatus written = Write(upload.file, m_model.file); !written) return written;
        for (const CImageDataText& texture : upload.textures) {
            m_model.textures.push_back({texture.name, {}});
            if (CStatus written = Write(texture.data, m_model.textures.back().blob); !written) return written;
        }
        if (m_isStopped || !m_units.DoContinue()) return Cancelled();
        m_model.name = upload.name;
        m_model.group = upload.group;
        const CResult<CAddedModel> added = m_store.AddModel(std::exchange(m_model, {}));
        return added ? CStatus(CDone{}) : CStatus(added.Error());
    }

  private:
    CStatus Write(std::span<const std::byte> bytes, CNewBlob& blob) {
        CBlobWriter writer(&m_store);
        const std::uint64_t size = bytes.size();
        while (!bytes.empty()) {
            const auto piece = bytes.first(std::min<std::size_t>(bytes.size(), CProgressUnits::kUnitBytes));
            if (CStatus taken = writer.Take(piece); !taken) return taken;
            bytes = bytes.subspan(piece.size());
            if (m_isStopped || !m_units.BytesTo(size - bytes.size())) return Cancelled();
        }
        m_units.EndPart(size);
        CResult<CNewBlob> written = writer.Finish();
        if (!written) return written.Error();
        blob = std::move(written).Value();
        return CDone{};
    }

    CModelStore& m_store;
    CProgressUnits& m_units;
    const std::atomic<bool>& m_isStopped;
    CNewModel m_model;
};

}  // namespace

CResult<CEmbeddedLibrary::CStorePtr> CEmbeddedLibrary::Take() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_resting.empty()) {
            CStorePtr store = std::move(m_resting.back());
            m_resting.pop_back();
            return store;
        }
    }
    CResult<CModelStore> opened = CModelStore::Open(CStoreAddress::Parse(m_path), EStoreUse::Write);
    if (!opened) return opened.Error();
    return std::make_unique<CModelStore>(std::move(opened).Value());
}

template <class TCall>
auto CEmbeddedLibrary::With(TCall call) -> decltype(call(std::declval<CModelStore&>())) {
    if (m_isStopped) return Cancelled();
    CResult<CStorePtr> store = Take();
    if (!store) return store.Error();
    auto result = call(*store.Value());
    const std::lock_guard lock(m_mutex);
    m_resting.push_back(std::move(store).Value());
    return result;
}

CStatus CEmbeddedLibrary::Open() {
    if (CStatus made = MakeUserStore(m_path, m_samplesFolder); !made) return made;
    return With([](CModelStore&) -> CStatus { return CDone{}; });
}

CResult<bool> CEmbeddedLibrary::Accepts(const std::string& version) {
    return version == wire_limits::kProtocol;
}

CResult<std::vector<CGroupRecord>> CEmbeddedLibrary::Groups(CProgressUnits& units) {
    units.Start(1);
    auto groups = With([](CModelStore& store) { return store.Groups(); });
    if (groups) units.Finish();
    return groups;
}

CResult<CGroupRecord> CEmbeddedLibrary::Group(const std::string& name) {
    return With([&](CModelStore& store) { return store.Group(name); });
}

CResult<CSmpModelArr> CEmbeddedLibrary::Models(const std::string& group, CProgressUnits& units) {
    return With([&](CModelStore& store) -> CResult<CSmpModelArr> {
        constexpr std::size_t kPage = store_limits::kPageModels;
        const CResult<CGroupRecord> record = store.Group(group);
        if (!record) return record.Error();
        units.Start((record.Value().modelCount + kPage - 1) / kPage);
        CSmpModelArr models;
        std::optional<CPagePlace> place;
        for (std::uint64_t pages = 1;; ++pages) {
            CResult<std::vector<CModelSummary>> page = store.Models(record.Value().id, place, kPage);
            if (!page) return page.Error();
            for (const CModelSummary& model : page.Value()) models.push_back({model.name, model.key});
            if (m_isStopped || !units.StepTo(pages)) return Cancelled();
            if (page.Value().size() < kPage) break;
            place = CPagePlace{models.back().name, models.back().id};
        }
        units.Finish();
        return models;
    });
}

CResult<std::vector<CFoundModel>> CEmbeddedLibrary::Search(const std::string& text, CProgressUnits& units) {
    units.Start(1);
    auto found = With([&](CModelStore& store) { return store.Search(text, 0, wire_limits::kFound); });
    if (found) units.Finish();
    return found;
}

CResult<bool> CEmbeddedLibrary::Has(std::uint32_t key) {
    return With([&](CModelStore& store) { return store.HasModel(key); });
}

CResult<CModelRecord> CEmbeddedLibrary::Model(std::uint32_t key, CProgressUnits& /*units*/) {
    return With([&](CModelStore& store) { return store.Model(key); });
}

CStatus CEmbeddedLibrary::Read(const CStoredBlob& blob, std::span<std::byte> target, CProgressUnits& units) {
    return With([&](CModelStore& store) -> CStatus {
        CTargetSink sink(target, units, m_isStopped);
        if (CStatus read = store.ReadBytes(blob.hash, sink); !read) return read;
        units.EndPart(blob.size);
        if (sink.IsFull()) return CDone{};
        return CError{EErrorCode::BadFormat, lng::Mark("the model store is damaged"), {}};
    });
}

CStatus CEmbeddedLibrary::Upload(const CModelUpload& upload, CProgressUnits& units) {
    return With([&](CModelStore& store) -> CStatus {
        std::uint64_t total = upload.file.size();
        for (const CImageDataText& texture : upload.textures) total += texture.data.size();
        units.StartBytes(total);
        CStatus added = CStagedModel(store, units, m_isStopped).Add(upload);
        if (added) units.Finish();
        return added;
    });
}
