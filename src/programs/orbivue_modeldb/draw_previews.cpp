// SPDX-License-Identifier: MIT
#include "programs/orbivue_modeldb/draw_previews.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "modeldb/server/work/CPreviewQueue.h"
#include "modeldb/server/work/CWorkshop.h"
#include "programs/orbivue_modeldb/CModelDbOptions.h"
#include "programs/orbivue_modeldb/store_output.h"

namespace {

class CDrawing {
  public:
    CDrawing(const CModelDbOptions& options, std::span<const std::uint32_t> keys, unsigned threads)
        : m_options(options), m_keys(keys), m_workshop({.processes = threads + 1}) {}

    /** What one thread does. */
    void Work() {
        CResult<CModelStore> store = OpenStore(m_options, EStoreUse::Write);
        if (!store) return Fail(store.Error());
        while (!m_ends) {
            const std::size_t at = m_next++;
            if (at >= m_keys.size()) return;
            const CStatus drawn = CPreviewQueue::DrawNow(store.Value(), m_workshop, m_keys[at]);
            if (drawn)
                ++m_drawn;
            else if (drawn.Error().code == EErrorCode::NoSpace ||
                     drawn.Error().code == EErrorCode::WriteFailed)
                Fail(drawn.Error());
        }
    }
    [[nodiscard]] std::size_t Drawn() const { return m_drawn; }
    [[nodiscard]] const std::optional<CError>& Failure() const { return m_failure; }

  private:
    void Fail(const CError& error) {
        const std::scoped_lock lock(m_mutex);
        m_failure = error;
        m_ends = true;
    }

    const CModelDbOptions& m_options;
    std::span<const std::uint32_t> m_keys;
    CWorkshop m_workshop;
    std::atomic<std::size_t> m_next = 0, m_drawn = 0;
    std::atomic<bool> m_ends = false;
    std::mutex m_mutex;
    std::optional<CError> m_failure;
};

}  // namespace

CStatus DrawPreviews(const CModelDbOptions& options, std::span<const std::uint32_t> keys) {
    if (keys.empty()) return CDone{};
    const unsigned count = std::max(std::thread::hardware_concurrency(), 1U);
    CDrawing drawing(options, keys, count);
    std::vector<std::jthread> threads;
    for (unsigned i = 0; i < count; ++i) threads.emplace_back([&] { drawing.Work(); });
    threads.clear();
    (void)Print(std::to_string(drawing.Drawn()) + " previews drawn, " +
                std::to_string(keys.size() - drawing.Drawn()) + " models without one\n");
    if (drawing.Failure()) return *drawing.Failure();
    return CDone{};
}
