// SPDX-License-Identifier: MIT
#include "modeldb/protocol/CUploadBodyReader.h"

#include <algorithm>
#include <optional>
#include <string>

#include "base/byte_order.h"
#include "modeldb/protocol/upload_form.h"
#include "modeldb/protocol/wire_limits.h"

namespace {

CError Bad(const char* sentence) {
    return {EErrorCode::BadFormat, sentence, {}};
}

}  // namespace

struct CUploadBodyReader::CState {
    CState(const CLimits& given, CUploadTaker& taking) : limits(given), taker(taking) {}

    /** Takes the beginning of a piece; how many bytes that were. */
    CResult<std::size_t> TakeSome(std::span<const std::byte> piece);
    CResult<std::size_t> TakeBeginning(std::span<const std::byte> piece);
    CResult<std::size_t> TakePart(std::span<const std::byte> piece);
    [[nodiscard]] CStatus StartHead();
    [[nodiscard]] CStatus ReadHead();
    /** Opens the next part that has bytes; those before it are over at once. */
    [[nodiscard]] CStatus OpenParts();
    [[nodiscard]] CStatus ClosePart();
    [[nodiscard]] const CUploadPart& Part() const {
        return number == 0 ? head.file : head.textures[number - 1].part;
    }

    const CLimits limits;
    CUploadTaker& taker;
    std::vector<std::byte> beginning;                ///< all before the file, until it is whole
    std::size_t wanted = upload_form::kPrefixBytes;  ///< how long it is, as far as that is known
    bool hasHead = false;
    CUploadHead head;
    std::size_t number = 0;  ///< of the part that is read
    std::uint64_t left = 0;  ///< its bytes that have not come yet
    CByteSink* sink = nullptr;
    CBlobHasher hasher;
    std::optional<CError> failure;
};

CResult<std::size_t> CUploadBodyReader::CState::TakeSome(std::span<const std::byte> piece) {
    if (!hasHead) return TakeBeginning(piece);
    if (!sink) return Bad("the body of the upload is longer than its head says");
    return TakePart(piece);
}

CResult<std::size_t> CUploadBodyReader::CState::TakeBeginning(std::span<const std::byte> piece) {
    const std::size_t taken = std::min(piece.size(), wanted - beginning.size());
    beginning.insert(beginning.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(taken));
    if (beginning.size() < wanted) return taken;
    const CStatus done = wanted == upload_form::kPrefixBytes ? StartHead() : ReadHead();
    return done ? CResult<std::size_t>(taken) : done.Error();
}

CStatus CUploadBodyReader::CState::StartHead() {
    if (!std::ranges::equal(std::span(beginning).first(upload_form::kMark.size()),
                            std::as_bytes(std::span(upload_form::kMark)))) {
        return Bad("this is no upload of a model");
    }
    if (byte_order::At8(beginning, upload_form::kVersionAt) != upload_form::kVersion)
        return Bad("the form of the upload is not known");
    const std::uint32_t length = byte_order::Le32(beginning, upload_form::kLengthAt);
    if (length > wire_limits::kHeadBytes)
        return CError{EErrorCode::TooLarge, "the head of the upload is too long", {}};
    if (length == 0) return Bad("the head of the upload is not what it should be");
    wanted += length;
    return CDone{};
}

CStatus CUploadBodyReader::CState::ReadHead() {
    const std::span<const std::byte> json = std::span(beginning).subspan(upload_form::kPrefixBytes);
    CResult<CUploadHead> read = wire_records::ReadUploadHead(
        {reinterpret_cast<const char*>(json.data()), json.size()}, limits.textures);
    if (!read) return read.Error();
    head = std::move(read).Value();
    // Neither the number of parts nor the size of one lets this sum overflow.
    std::uint64_t bytes = beginning.size() + head.file.size;
    for (const CUploadTexture& texture : head.textures) bytes += texture.part.size;
    if (bytes != limits.bodyBytes)
        return Bad("the sizes in the head do not add up to the body of the upload");
    beginning = {};
    hasHead = true;
    const CStatus taken = taker.OnHead(head);
    return taken ? OpenParts() : taken;
}

CStatus CUploadBodyReader::CState::OpenParts() {
    while (number <= head.textures.size()) {
        const CResult<CByteSink*> opened = taker.OnPart(number);
        if (!opened) return opened.Error();
        sink = opened.Value();
        left = Part().size;
        if (left > 0) break;
        if (CStatus closed = ClosePart(); !closed) return closed;
    }
    return CDone{};
}

CStatus CUploadBodyReader::CState::ClosePart() {
    sink = nullptr;
    if (hasher.Finish() != Part().hash) return Bad("the SHA-256 of the upload is wrong");
    return taker.OnPartEnd(number++);
}

CResult<std::size_t> CUploadBodyReader::CState::TakePart(std::span<const std::byte> piece) {
    const auto taken = static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), left));
    hasher.Add(piece.first(taken));
    if (const CStatus given = sink->Take(piece.first(taken)); !given) return given.Error();
    left -= taken;
    if (left > 0) return taken;
    if (const CStatus closed = ClosePart(); !closed) return closed.Error();
    const CStatus opened = OpenParts();
    return opened ? CResult<std::size_t>(taken) : opened.Error();
}

CUploadBodyReader::CUploadBodyReader(const CLimits& limits, CUploadTaker& taker)
    : m_state(std::make_unique<CState>(limits, taker)) {}
CUploadBodyReader::~CUploadBodyReader() = default;

CStatus CUploadBodyReader::Take(std::span<const std::byte> piece) {
    while (!m_state->failure && !piece.empty()) {
        const CResult<std::size_t> taken = m_state->TakeSome(piece);
        if (!taken) m_state->failure = taken.Error();
        if (taken) piece = piece.subspan(taken.Value());
    }
    return m_state->failure ? CStatus(*m_state->failure) : CDone{};
}

CStatus CUploadBodyReader::Finish() {
    const bool isWhole = m_state->hasHead && !m_state->sink;
    if (!m_state->failure && !isWhole) m_state->failure = Bad("the body of the upload ends too early");
    return m_state->failure ? CStatus(*m_state->failure) : CDone{};
}
