// SPDX-License-Identifier: MIT
#include "modeldb/client/CBlobDownload.h"

#include <string>
#include <utility>

#include "base/text/lng.h"

namespace {

constexpr int kPartOfIt = 206, kNoSuchRange = 416;

CError OtherThanAsked() {
    return {EErrorCode::BadFormat, lng::Mark("the server sends something else than was asked for"), {}};
}

/** Puts what comes behind what is there. */
class CPartWatcher final : public CUnitsWatcher {
  public:
    CPartWatcher(CProgressUnits& units, CCachePart& part, std::uint64_t stored)
        : CUnitsWatcher(units), m_part(part), m_stored(stored) {}

    CStatus OnHead(const CTransferHead& head) override {
        if (head.status == kPartOfIt) {
            const std::string rest = "bytes " + std::to_string(m_part.Size()) + "-" +
                                     std::to_string(m_stored - 1) + "/" + std::to_string(m_stored);
            return head.contentRange == rest ? CStatus(CDone{}) : CStatus(OtherThanAsked());
        }
        if (head.length && *head.length != m_stored) return OtherThanAsked();
        return m_part.Size() == 0 ? CDone{} : m_part.Restart();  // it sends all of it
    }
    CStatus OnBytes(std::span<const std::byte> piece) override {
        if (CStatus kept = m_part.Append(piece); !kept) return kept;
        if (m_units.BytesTo(m_part.Size())) return CDone{};
        return CError{EErrorCode::Cancelled, lng::Mark("cancelled"), {}};
    }

  private:
    CCachePart& m_part;
    std::uint64_t m_stored;
};

}  // namespace

CStatus CBlobDownload::Run(std::span<std::byte> target) {
    CStatus done = m_cache.Read(m_blob, target) ? CStatus(CDone{}) : Fetch(target);
    if (!done) return done;
    if (!m_units.BytesTo(m_blob.stored)) return CError{EErrorCode::Cancelled, lng::Mark("cancelled"), {}};
    m_units.EndPart(m_blob.stored);
    return done;
}

CStatus CBlobDownload::Fetch(std::span<std::byte> target) {
    CResult<CCachePart> part = m_cache.Begin(m_blob);
    if (!part) return part.Error();
    const bool hasBeginning = part.Value().Size() > 0;
    CStatus done = FetchRest(part.Value());
    if (done) done = part.Value().Finish(target);
    // What was there before may be to blame.
    if (!done && done.Error().code == EErrorCode::BadFormat && hasBeginning) {
        done = part.Value().Restart();
        if (done) done = FetchRest(part.Value());
        if (done) done = part.Value().Finish(target);
    }
    m_cache.Grow(part.Value().Size());
    return done;
}

CStatus CBlobDownload::FetchRest(CCachePart& part) {
    if (part.Size() == m_blob.stored) return CDone{};
    const EBlobForm form = m_blob.codec == EBlobCodec::Zstd ? EBlobForm::Stored : EBlobForm::Plain;
    CTransferRequest request;
    request.mostBytes = m_blob.stored;
    request.deadline = CServerCalls::DeadlineFor(m_blob.stored);
    if (part.Size() > 0)
        request.headers = {"Range: bytes=" + std::to_string(part.Size()) + "-",
                           "If-Range: " + wire_address::BlobTag(m_blob.hash, form)};
    CPartWatcher watcher(m_units, part, m_blob.stored);
    const auto answer =
        m_calls.Run(CBlobAddress{m_blob.hash, form}, std::move(request), watcher, kNoSuchRange);
    if (!answer) return answer.Error();
    return part.Size() == m_blob.stored ? CStatus(CDone{}) : CStatus(OtherThanAsked());
}
