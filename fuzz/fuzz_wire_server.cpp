// SPDX-License-Identifier: MIT
// What a client asks a server of models: addresses and the bodies of uploads. The first byte chooses: an address, a body as it
// is, or a good body of which bytes were changed, so that sizes and hashes are right up to the change.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "modeldb/protocol/CUploadBodyReader.h"
#include "modeldb/protocol/CUploadBodySource.h"
#include "modeldb/protocol/wire_address.h"

namespace {

using CBytes = std::vector<std::byte>;

void Require(bool holds) {
    if (!holds) std::abort();
}

void TryAddress(std::string_view target) {
    const auto read = wire_address::Read(target);
    if (!read) return;
    const std::string written = wire_address::Write(read.Value());
    const auto again = wire_address::Read(written);
    // A text of three bytes a character fits into a target that was sent unescaped, not always into one that is escaped.
    if (!again && written.size() > wire_limits::kTarget) return;
    Require(again.HasValue() && wire_address::Write(again.Value()) == written);
    (void)wire_address::CheckServer(target);
}

/** Counts what arrives, and holds that it comes in order and in the sizes that were promised. */
class CCounter final : public CUploadTaker, public CByteSink {
  public:
    std::vector<CBytes> parts;

    CStatus OnHead(const CUploadHead& head) override {
        Require(!head.name.empty() && !head.group.empty() && m_sizes.empty());
        m_sizes.push_back(head.file.size);
        for (const CUploadTexture& texture : head.textures) m_sizes.push_back(texture.part.size);
        return CDone{};
    }
    CResult<CByteSink*> OnPart(std::size_t number) override {
        Require(number == parts.size() && number < m_sizes.size());
        parts.emplace_back();
        return static_cast<CByteSink*>(this);
    }
    CStatus Take(std::span<const std::byte> piece) override {
        parts.back().insert(parts.back().end(), piece.begin(), piece.end());
        Require(!piece.empty() && parts.back().size() <= m_sizes[parts.size() - 1]);
        return CDone{};
    }
    CStatus OnPartEnd(std::size_t number) override {
        Require(number + 1 == parts.size() && parts.back().size() == m_sizes[number]);
        return CDone{};
    }
    [[nodiscard]] bool HasAll() const { return parts.size() == m_sizes.size(); }

  private:
    std::vector<std::uint64_t> m_sizes;
};

/** Whether the body is taken; in pieces of so many bytes. */
bool Take(std::span<const std::byte> body, std::size_t piece, CCounter& counter) {
    CUploadBodyReader reader({body.size(), 20}, counter);
    while (!body.empty()) {
        const std::size_t size = std::min(piece, body.size());
        if (!reader.Take(body.first(size))) return false;
        body = body.subspan(size);
    }
    const bool isWhole = reader.Finish().HasValue();
    Require(!isWhole || counter.HasAll());
    return isWhole;
}

/** Pairs of bytes say where to change what. */
void TryChanged(std::span<const std::byte> changes, std::size_t piece) {
    const std::string_view file = "file's bytes", picture = "picture's";
    const auto bytes = [](std::string_view text) { return std::as_bytes(std::span(text)); };
    const CUploadBodySource::CPicture pictures[] = {{"a.png", bytes(picture)}, {"none", {}}};
    CUploadBodySource source =
        CUploadBodySource::Make({"name", "group", "", "", {}, {}}, bytes(file), pictures).Value();
    CBytes body(source.Size());
    Require(source.Give(body).Value() == body.size());
    for (; changes.size() >= 3; changes = changes.subspan(3)) {
        const auto place =
            std::to_integer<std::size_t>(changes[0]) << 8 | std::to_integer<std::size_t>(changes[1]);
        body[place % body.size()] = changes[2];
    }
    CCounter counter;
    if (!Take(body, piece, counter)) return;
    Require(std::ranges::equal(counter.parts.at(0), bytes(file)));
    Require(std::ranges::equal(counter.parts.at(1), bytes(picture)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const auto rest = std::as_bytes(std::span(data + 2, size - 2));
    const std::size_t piece = data[1] + 1u;
    CCounter counter;
    switch (data[0] % 3) {
        case 0:
            TryAddress({reinterpret_cast<const char*>(data) + 1, size - 1});
            break;
        case 1:
            (void)Take(rest, piece, counter);
            break;
        default:
            TryChanged(rest, piece);
            break;
    }
    return 0;
}
