// SPDX-License-Identifier: MIT
#pragma once

#include <wx/event.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "picture/CImage.h"

/** Gets the library's pictures of models, on a thread of its own, which decodes them, too. Of what is asked for while one
 * is under way the last one is next. The pictures last asked for are kept. Thread of the windows only. */
class CPreviewFetcher final : public wxEvtHandler {
  public:
    /** arrived is called when a picture, or the news that there is none, has come. Pictures are made to fit sidePx. */
    CPreviewFetcher(int sidePx, std::function<void(std::uint32_t id)> arrived);
    /** Waits for the call that runs: C3DModelsLoadApi::Close ends it. */
    ~CPreviewFetcher() override;

    /** The picture of a model, empty for one without; valid until the next call. Null when it is not known yet: then it is
     * got now. */
    [[nodiscard]] const CImage* Find(std::uint32_t id);
    /** Forgets all pictures: what has them may have changed. */
    void Forget() { m_known.clear(); }

  private:
    using CClock = std::chrono::steady_clock;
    struct CKnown {
        CImage image;
        CClock::time_point askedAt;
    };

    void Run();
    void Ask(std::uint32_t id);
    void Keep(std::uint32_t id, CImage image);

    int m_sidePx;
    std::function<void(std::uint32_t)> m_arrived;
    std::map<std::uint32_t, CKnown> m_known;

    std::mutex m_mutex;
    std::condition_variable m_isWanted;
    std::optional<std::uint32_t> m_wanted;  ///< guarded by m_mutex, as is m_isOver
    bool m_isOver = false;
    std::thread m_thread;  ///< started by the first question
};
