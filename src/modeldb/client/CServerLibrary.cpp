// SPDX-License-Identifier: MIT
#include "modeldb/client/CServerLibrary.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/text/lng.h"
#include "modeldb/client/CBlobDownload.h"
#include "modeldb/protocol/CUploadBodySource.h"
#include "modeldb/protocol/wire_limits.h"
#include "modeldb/protocol/wire_records.h"

using lng::Mark;

namespace {

constexpr std::size_t kMostGroupModels = 2'000'000;
constexpr std::size_t kMostNameBytes = 256 << 20;  ///< of all names of a group

CError Cancelled() {
    return {EErrorCode::Cancelled, Mark("cancelled"), {}};
}

/** The models of a group as they come, page after page. */
class CGatheredModels {
  public:
    /** TooLarge; BadFormat: the page brings nothing on. */
    CStatus Add(CModelsPage page) {
        if (page.more && (page.models.empty() || IsLast(page.models.back())))
            return CError{
                EErrorCode::BadFormat, Mark("the server sends the same models again and again"), {}};
        for (CModelSummary& model : page.models) {
            m_nameBytes += model.name.size();
            models.push_back({std::move(model.name), model.key});
        }
        if (models.size() > kMostGroupModels || m_nameBytes > kMostNameBytes)
            return CError{EErrorCode::TooLarge, Mark("the group has more models than can be shown"), {}};
        return CDone{};
    }
    [[nodiscard]] std::optional<CPagePlace> Place() const {
        if (models.empty()) return std::nullopt;
        return CPagePlace{models.back().name, models.back().id};
    }

    CSmpModelArr models;

  private:
    [[nodiscard]] bool IsLast(const CModelSummary& model) const {
        return !models.empty() && models.back().name == model.name && models.back().id == model.key;
    }
    std::size_t m_nameBytes = 0;
};

/** Tells how much of an upload is on its way, and takes the answer. */
class CUploadWatcher final : public CUnitsWatcher {
  public:
    using CUnitsWatcher::CUnitsWatcher;
    CStatus OnBytes(std::span<const std::byte> piece) override {
        answer.append(reinterpret_cast<const char*>(piece.data()), piece.size());
        return CDone{};
    }
    void OnSent(std::uint64_t total) override { (void)m_units.BytesTo(total); }  // DoContinue is asked anyway
    std::string answer;
};

std::vector<CUploadBodySource::CPicture> PicturesOf(const CImageDataTextVec& textures) {
    std::vector<CUploadBodySource::CPicture> pictures;
    pictures.reserve(textures.size());
    for (const CImageDataText& texture : textures) pictures.push_back({texture.name, texture.data});
    return pictures;
}

}  // namespace

CStatus CServerLibrary::Open() {
    CProgressUnits units(nullptr);
    const CResult<CVersionAnswer> version =
        m_calls.GetRecord(CVersionAddress{std::string(wire_limits::kProtocol)}, wire_limits::kSmallBody,
                          units, &wire_records::ReadVersion);
    if (!version) {
        const EErrorCode code = version.Error().code;
        const bool isOther =
            code == EErrorCode::NotFound || code == EErrorCode::BadFormat || code == EErrorCode::TooLarge;
        return isOther ? m_calls.Named({code, Mark("the server does not answer as one of models does"), {}})
                       : version.Error();
    }
    if (!version.Value().isPrivate) return CDone{};
    const CResult<bool> asked = m_calls.Has(CModelAddress{0});  // refused without the right token
    return asked ? CStatus(CDone{}) : CStatus(asked.Error());
}

CResult<bool> CServerLibrary::Accepts(const std::string& version) {
    CProgressUnits units(nullptr);
    const CResult<CVersionAnswer> answer = m_calls.GetRecord(
        CVersionAddress{version}, wire_limits::kSmallBody, units, &wire_records::ReadVersion);
    if (!answer) return answer.Error();
    return answer.Value().accepted;
}

CResult<std::vector<CGroupRecord>> CServerLibrary::Groups(CProgressUnits& units) {
    units.Start(1);
    auto groups =
        m_calls.GetRecord(CGroupsAddress{}, wire_limits::kListBody, units, &wire_records::ReadGroups);
    if (groups) units.Finish();
    return groups;
}

CResult<CGroupRecord> CServerLibrary::Group(const std::string& name) {
    CProgressUnits units(nullptr);
    return GroupOf(name, units);
}

CResult<CGroupRecord> CServerLibrary::GroupOf(const std::string& name, CProgressUnits& units) {
    return m_calls.GetRecord(CGroupAddress{name}, wire_limits::kSmallBody, units, &wire_records::ReadGroup);
}

CResult<CSmpModelArr> CServerLibrary::Models(const std::string& group, CProgressUnits& units) {
    constexpr std::size_t kPage = wire_limits::kPageModels;
    const CResult<CGroupRecord> record = GroupOf(group, units);
    if (!record) return record.Error();
    units.Start((record.Value().modelCount + kPage - 1) / kPage);
    CGatheredModels gathered;
    for (std::uint64_t pages = 1;; ++pages) {
        CResult<CModelsPage> page =
            m_calls.GetRecord(CModelsAddress{record.Value().id, gathered.Place(), kPage},
                              wire_limits::kListBody, units, &wire_records::ReadModels);
        if (!page) return page.Error();
        const bool more = page.Value().more;
        if (CStatus added = gathered.Add(std::move(page).Value()); !added)
            return m_calls.Named(added.Error());
        if (!units.StepTo(pages)) return Cancelled();
        if (!more) break;
    }
    units.Finish();
    return std::move(gathered.models);
}

CResult<std::vector<CFoundModel>> CServerLibrary::Search(const std::string& text, CProgressUnits& units) {
    units.Start(1);
    CResult<CFoundPage> found = m_calls.GetRecord(CSearchAddress{text, 0, wire_limits::kFound},
                                                  wire_limits::kListBody, units, &wire_records::ReadFound);
    if (!found) return found.Error();
    units.Finish();
    return std::move(found.Value().models);
}

CResult<bool> CServerLibrary::Has(std::uint32_t key) {
    return m_calls.Has(CModelAddress{key});
}

CResult<CModelRecord> CServerLibrary::Model(std::uint32_t key, CProgressUnits& units) {
    auto model =
        m_calls.GetRecord(CModelAddress{key}, wire_limits::kModelBody, units, &wire_records::ReadModel);
    if (model && model.Value().key != key)
        return m_calls.Named(
            {EErrorCode::BadFormat, Mark("the server sends another model than was asked for"), {}});
    return model;
}

CStatus CServerLibrary::Read(const CStoredBlob& blob, std::span<std::byte> target, CProgressUnits& units) {
    CStatus read = CBlobDownload(m_calls, m_cache, blob, units).Run(target);
    if (!read && read.Error().code == EErrorCode::BadFormat) return m_calls.Named(read.Error());
    return read;
}

CStatus CServerLibrary::Upload(const CModelUpload& upload, CProgressUnits& units) {
    CUploadHead head;
    head.name = upload.name;
    head.group = upload.group;
    const std::vector<CUploadBodySource::CPicture> pictures = PicturesOf(upload.textures);
    CResult<CUploadBodySource> body = CUploadBodySource::Make(std::move(head), upload.file, pictures);
    if (!body) return body.Error();
    units.StartBytes(body.Value().Size());
    CTransferRequest request;
    request.method = ETransferMethod::Post;
    request.headers = {"Content-Type: " + std::string(wire_limits::kUploadType)};
    request.body = {&body.Value(), body.Value().Size(), [&body] { body.Value().Rewind(); }};
    request.mostBytes = wire_limits::kSmallBody;
    request.deadline = CServerCalls::DeadlineFor(body.Value().Size());
    CUploadWatcher watcher(units);
    const CResult<CTransferAnswer> answer = m_calls.Run(CUploadAddress{}, std::move(request), watcher);
    if (!answer) return answer.Error();
    const CResult<CAddedModel> added = wire_records::ReadUploaded(watcher.answer);
    if (!added) return m_calls.Named(added.Error());
    units.Finish();
    return CDone{};
}
