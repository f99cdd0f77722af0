// SPDX-License-Identifier: MIT
#include "modeldb/server/work/worker_order.h"

#include <array>
#include <charconv>
#include <span>

#include "base/text/utf8_text.h"
#include "picture/image_probe.h"

namespace {

constexpr std::size_t kMostReasonBytes = 300;
constexpr std::array<std::pair<EWork, std::string_view>, 3> kWorks{
    {{EWork::Inspect, "inspect"}, {EWork::Preview, "preview"}, {EWork::Page, "page"}}};

/** Fields, each ended by a zero byte, which no name holds. */
class CFields {
  public:
    explicit CFields(std::string_view bytes) : m_rest(bytes) {}
    [[nodiscard]] bool AtEnd() const { return m_rest.empty(); }
    [[nodiscard]] bool AllGood() const { return m_good; }

    std::string_view Text() {
        const std::size_t end = m_rest.find('\0');
        if (end == std::string_view::npos) {
            m_good = false;
            m_rest = {};
            return {};
        }
        const std::string_view field = m_rest.substr(0, end);
        m_rest.remove_prefix(end + 1);
        return field;
    }
    std::uint64_t Number() {
        const std::string_view text = Text();
        std::uint64_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        m_good = m_good && error == std::errc() && end == text.data() + text.size();
        return number;
    }
    CFileStretch Stretch() {
        const std::uint64_t offset = Number();
        return {offset, Number()};
    }

  private:
    std::string_view m_rest;
    bool m_good = true;
};

void Put(std::string& to, std::string_view name, const CFileStretch& stretch) {
    to.append(name.substr(0, name.find('\0'))).append(1, '\0');
    to.append(std::to_string(stretch.offset)).append(1, '\0');
    to.append(std::to_string(stretch.bytes)).append(1, '\0');
}

bool IsPreview(std::string_view bytes) {
    const auto claim = image_probe::ClaimOf(std::as_bytes(std::span(bytes)), {});
    constexpr std::uint64_t kMost = worker_order::kPreviewSidePx;
    return claim &&
           (claim.Value().format == EPictureFormat::Jpeg || claim.Value().format == EPictureFormat::Png) &&
           claim.Value().width <= kMost && claim.Value().height <= kMost;
}

}  // namespace

std::string worker_order::Write(EWork work, const CModelInput& input) {
    std::string order;
    for (const auto& [known, word] : kWorks)
        if (known == work) order.append(word).append(1, '\0');
    Put(order, input.name, input.model);
    for (const CTextureInput& texture : input.textures) Put(order, texture.name, texture.stretch);
    return order;
}

std::optional<CWorkerOrder> worker_order::Read(std::string_view bytes) {
    CFields fields(bytes);
    CWorkerOrder order;
    const std::string_view work = fields.Text();
    bool isKnown = false;
    for (const auto& [known, word] : kWorks) {
        if (work != word) continue;
        order.work = known;
        isKnown = true;
    }
    order.name = fields.Text();
    order.model = fields.Stretch();
    while (fields.AllGood() && !fields.AtEnd()) {
        CTextureInput& texture = order.textures.emplace_back();
        texture.name = fields.Text();
        texture.stretch = fields.Stretch();
    }
    if (!isKnown || !fields.AllGood()) return std::nullopt;
    return order;
}

std::optional<CWorkerAnswer> worker_order::ReadAnswer(EWork work, std::string_view bytes) {
    if (bytes.empty() || bytes.size() > kMostAnswerBytes) return std::nullopt;
    const EWorked worked{bytes.front()};
    const std::string_view rest = bytes.substr(1);
    switch (worked) {
        case EWorked::Done:
            if (work == EWork::Preview ? !IsPreview(rest) : !rest.empty()) return std::nullopt;
            return CWorkerAnswer{worked, std::string(rest)};
        case EWorked::Refuses:
        case EWorked::Fails:
            return CWorkerAnswer{worked, utf8_text::Printable(utf8_text::Cut(rest, kMostReasonBytes), '?')};
    }
    return std::nullopt;
}
