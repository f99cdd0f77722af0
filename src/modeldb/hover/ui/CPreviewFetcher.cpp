// SPDX-License-Identifier: MIT
#include "modeldb/hover/ui/CPreviewFetcher.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

#include "modeldb/client/C3DModelsLoadApi.h"
#include "picture/decode/image_codec.h"
#include "picture/shrink_image.h"

namespace {

constexpr std::size_t kMostKept = 100;
constexpr std::chrono::seconds kMissingFor(20);  ///< a library draws its pictures some time after an upload
constexpr image_codec::CDecodeLimits kLimits{.bytes = 4ULL << 20, .pixels = 4ULL << 20};

/** A preview is a PNG or a JPEG file; anything else is none. */
CImage Decoded(const std::vector<std::byte>& bytes, int sidePx) {
    const EPictureFormat format = image_probe::FormatOf(bytes, {});
    if (format != EPictureFormat::Png && format != EPictureFormat::Jpeg) return {};
    CResult<image_codec::CDecodedImage> decoded = image_codec::DecodeImage(bytes, {}, kLimits);
    if (!decoded) return {};
    return ShrinkImage(std::move(decoded).Value().image, sidePx);
}

}  // namespace

CPreviewFetcher::CPreviewFetcher(int sidePx, std::function<void(std::uint32_t)> arrived)
    : m_sidePx(sidePx), m_arrived(std::move(arrived)) {}

CPreviewFetcher::~CPreviewFetcher() {
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_isWanted.notify_one();
    if (m_thread.joinable()) m_thread.join();
}

const CImage* CPreviewFetcher::Find(std::uint32_t id) {
    const auto known = m_known.find(id);
    const bool isSettled = known != m_known.end() && (!known->second.image.IsEmpty() ||
                                                      CClock::now() - known->second.askedAt < kMissingFor);
    if (!isSettled) Ask(id);
    return isSettled ? &known->second.image : nullptr;
}

void CPreviewFetcher::Ask(std::uint32_t id) {
    {
        const std::lock_guard lock(m_mutex);
        m_wanted = id;
    }
    m_isWanted.notify_one();
    if (m_thread.joinable()) return;
    try {
        m_thread = std::thread([this] { Run(); });
    } catch (const std::system_error&) {  // there are no pictures then
    }
}

void CPreviewFetcher::Run() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_isWanted.wait(lock, [this] { return m_isOver || m_wanted; });
        if (m_isOver) return;
        const std::uint32_t id = *std::exchange(m_wanted, std::nullopt);
        lock.unlock();
        std::vector<std::byte> bytes;
        CImage image;
        if (C3DModelsLoadApi::GetPreview(id, bytes)) image = Decoded(bytes, m_sidePx);
        CallAfter([this, id, image = std::move(image)]() mutable { Keep(id, std::move(image)); });
        lock.lock();
    }
}

void CPreviewFetcher::Keep(std::uint32_t id, CImage image) {
    if (m_known.size() >= kMostKept && !m_known.contains(id))
        m_known.erase(
            std::ranges::min_element(m_known, {}, [](const auto& known) { return known.second.askedAt; }));
    m_known[id] = {std::move(image), CClock::now()};
    m_arrived(id);
}
