// SPDX-License-Identifier: MIT
#include "frame/model_list/CThumbnailLoader.h"

#include <exception>
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "picture/decode/image_codec.h"
#include "picture/shrink_image.h"

namespace {

constexpr std::uint64_t kMostPngBytes = 16 << 20;

/** The picture that the drawing program wrote, which had a stranger's file in its hands. */
CResult<CImage> ReadDrawn(const std::string& path, EThumbnailSize size) {
    const auto bytes = file_util_ex::ReadPlainFile(path, kMostPngBytes);
    if (!bytes) return bytes.Error();
    image_codec::CDecodeLimits limits;
    limits.pixels = static_cast<std::uint64_t>(size) * static_cast<std::uint64_t>(size);
    const auto claim = image_codec::ClaimOf(bytes.Value(), {});
    const auto side = static_cast<std::uint64_t>(size);
    if (claim && (claim.Value().width > side || claim.Value().height > side))
        return CError{EErrorCode::TooLarge, lng::Mark("the picture is too large"), {}};
    auto decoded = image_codec::DecodeImage(bytes.Value(), {}, limits);
    if (!decoded) return decoded.Error();
    return std::move(decoded.Value().image);
}

}  // namespace

CThumbnailLoader::CThumbnailLoader(CThumbnailCache cache, int sidePx, std::function<void()> notify)
    : m_cache(std::move(cache)), m_sidePx(sidePx), m_notify(std::move(notify)), m_thread([this] { Run(); }) {}

CThumbnailLoader::~CThumbnailLoader() {
    {
        const std::lock_guard lock(m_guard);
        m_ends = true;
    }
    m_hasWork.notify_one();
    m_thread.join();
}

void CThumbnailLoader::Look(const std::wstring& path) {
    Add({path, false, {}, {}}, [this](CThumbnailNews& news) { LookNow(news); });
}

void CThumbnailLoader::KeepPicture(const std::wstring& path, const std::string& pngPath) {
    Add({path, true, {}, {}}, [this, pngPath](CThumbnailNews& news) { KeepPictureNow(pngPath, news); });
}

void CThumbnailLoader::KeepFailure(const std::wstring& path, const std::string& why, bool forGood) {
    Add({path, true, {}, why}, [this, forGood](CThumbnailNews& news) {
        const auto source = m_looked.extract(news.path);
        // A failure that is not kept is found again the next time.
        if (forGood && !source.empty()) (void)m_cache.WriteFailure(source.mapped(), *news.problem).HasValue();
    });
}

std::vector<CThumbnailNews> CThumbnailLoader::TakeNews() {
    const std::lock_guard lock(m_guard);
    return std::exchange(m_news, {});
}

void CThumbnailLoader::Add(CThumbnailNews news, CWork work) {
    {
        const std::lock_guard lock(m_guard);
        m_tasks.push_back({std::move(news), std::move(work)});
    }
    m_hasWork.notify_one();
}

void CThumbnailLoader::Run() {
    std::unique_lock lock(m_guard);
    while (true) {
        m_hasWork.wait(lock, [this] { return m_ends || !m_tasks.empty(); });
        if (m_ends) return;
        CTask task = std::move(m_tasks.front());
        m_tasks.pop_front();
        lock.unlock();
        try {
            task.work(task.news);
        } catch (const std::exception&) {
            task.news.problem = lng::Mark("not enough memory for the picture");
        }
        lock.lock();
        m_news.push_back(std::move(task.news));
        m_notify();
    }
}

void CThumbnailLoader::LookNow(CThumbnailNews& news) {
    auto source = CThumbnailSource::Of(file_util_ex::ConvertToUTF8(news.path));
    if (!source) {
        news.problem = lng::Mark("there is no such file or folder");
        return;
    }
    if (auto picture = m_cache.Read(*source, Size()))
        news.picture = ShrinkImage(std::move(*picture), m_sidePx);
    else
        news.problem = m_cache.ReadFailure(*source);
    if (!news.picture && !news.problem) m_looked[news.path] = std::move(*source);
}

void CThumbnailLoader::KeepPictureNow(const std::string& pngPath, CThumbnailNews& news) {
    CResult<CImage> picture = ReadDrawn(pngPath, Size());
    file_util_ex::DeleteFileW(pngPath);
    const auto source = m_looked.extract(news.path);
    if (!picture) {
        news.problem = picture.Error().message;
        return;
    }
    // Where the cache cannot be written, the picture is drawn again the next time.
    if (!source.empty()) (void)m_cache.Write(source.mapped(), Size(), picture.Value()).HasValue();
    news.picture = ShrinkImage(std::move(picture).Value(), m_sidePx);
}
