// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "picture/CImage.h"
#include "thumbnails/CThumbnailCache.h"

/** What became of a file's picture. */
struct CThumbnailNews {
    std::wstring path;
    bool wasDrawn = false;               ///< else it was looked for
    std::optional<CImage> picture;       ///< at most the loader's side
    std::optional<std::string> problem;  ///< why there is none, a line of English; neither: it is not kept
};

/** Reads the user's thumbnails and writes new ones, on a thread of its own, so that a slow disk holds up no window. */
class CThumbnailLoader {
  public:
    /** sidePx: of the pictures in the news. notify is called on the thread whenever there is news. */
    CThumbnailLoader(CThumbnailCache cache, int sidePx, std::function<void()> notify);
    CThumbnailLoader(const CThumbnailLoader&) = delete;
    CThumbnailLoader& operator=(const CThumbnailLoader&) = delete;
    /** Finishes the piece of work that is under way, and leaves out the others. */
    ~CThumbnailLoader();

    /** Looks for the thumbnail, or the failure, that is kept of the file's present state. */
    void Look(const std::wstring& path);
    /** Keeps a picture (PNG, a file that is deleted afterwards) of the state that was looked for last. */
    void KeepPicture(const std::wstring& path, const std::string& pngPath);
    /** Keeps the reason, for good or only in the news. */
    void KeepFailure(const std::wstring& path, const std::string& why, bool forGood);
    /** What happened since the last call. */
    [[nodiscard]] std::vector<CThumbnailNews> TakeNews();

    [[nodiscard]] int SidePx() const { return m_sidePx; }
    /** The size of the pictures that KeepPicture expects. */
    [[nodiscard]] EThumbnailSize Size() const { return ThumbnailSizeFor(m_sidePx); }

  private:
    /** Fills in what became of it. */
    using CWork = std::function<void(CThumbnailNews&)>;
    struct CTask {
        CThumbnailNews news;
        CWork work;
    };
    void Add(CThumbnailNews news, CWork work);
    void Run();
    void LookNow(CThumbnailNews& news);
    void KeepPictureNow(const std::string& pngPath, CThumbnailNews& news);

    CThumbnailCache m_cache;
    int m_sidePx;
    std::function<void()> m_notify;
    std::unordered_map<std::wstring, CThumbnailSource>
        m_looked;  ///< those without a thumbnail; the thread's own

    std::mutex m_guard;  ///< of what follows
    std::condition_variable m_hasWork;
    std::deque<CTask> m_tasks;
    std::vector<CThumbnailNews> m_news;
    bool m_ends = false;
    std::thread m_thread;  ///< last, as it uses the others
};
