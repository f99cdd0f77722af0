// SPDX-License-Identifier: MIT
#include "modeldb/server/work/CPreviewQueue.h"

#include <condition_variable>
#include <deque>
#include <limits>
#include <mutex>
#include <random>
#include <thread>
#include <unordered_set>
#include <utility>

#include "modeldb/server/work/CWorkshop.h"
#include "modeldb/store/CModelStore.h"

namespace {

constexpr std::size_t kKeysAtOnce = 200, kMostRefused = 100'000;
constexpr std::chrono::seconds kAfterFailure{10};  ///< of the store, or of the system
constexpr int kMostTries = 3;

/** False where another try may end otherwise. */
bool IsLasting(EErrorCode code) {
    return code == EErrorCode::BadFormat || code == EErrorCode::TooLarge || code == EErrorCode::NotFound;
}

}  // namespace

struct CPreviewQueue::CState {
    CState(CStoreAddress place, CWorkshop& shop, COptions wanted)
        : address(std::move(place)), workshop(shop), options(wanted), sweeps(wanted.sweeps) {
        begin = std::random_device()();  // servers on one store begin at different places
        next = begin;
        thread = std::jthread([this](const std::stop_token& stop) { Work(stop); });
    }

    void Add(std::uint32_t key) {
        {
            const std::scoped_lock lock(mutex);
            if (waiting.size() < options.mostWaiting)
                waiting.push_back(key);
            else
                sweeps = options.sweeps;
        }
        changed.notify_one();
    }

    [[nodiscard]] CPreviewCounts Counts() const {
        const std::scoped_lock lock(mutex);
        return {drawn, failed, waiting.size()};
    }

  private:
    void Work(const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            CResult<CModelStore> store = CModelStore::Open(address, EStoreUse::Write);
            while (store && !stop.stop_requested() && WorkOnce(store.Value(), stop)) {
            }
            std::unique_lock lock(mutex);
            (void)changed.wait_for(lock, stop, kAfterFailure, [] { return false; });
        }
    }

    /** One picture, or a wait for one. False when store or system fail. */
    bool WorkOnce(CModelStore& store, const std::stop_token& stop) {
        if (!WaitForKeys(stop)) return stop.stop_requested() || SweepOnce(store);
        std::uint32_t key = 0;
        {
            const std::scoped_lock lock(mutex);
            key = waiting.front();
        }
        if (!Draw(store, key)) return false;
        const std::scoped_lock lock(mutex);
        waiting.pop_front();
        return true;
    }

    /** True when keys are waiting; false after the pause of a sweep. */
    bool WaitForKeys(const std::stop_token& stop) {
        std::unique_lock lock(mutex);
        const auto hasKeys = [this] { return !waiting.empty(); };
        if (sweeps) return changed.wait_for(lock, stop, options.pause, hasKeys);
        (void)changed.wait(lock, stop, [&] { return hasKeys() || sweeps; });
        return hasKeys();
    }

    bool SweepOnce(CModelStore& store) {
        if (found.empty() && isAllFound) {
            const std::scoped_lock lock(mutex);
            sweeps = isAllFound = false;
            return true;
        }
        if (found.empty()) return FindMore(store);
        if (!Draw(store, found.front())) return false;
        found.pop_front();
        return true;
    }

    /** The next models of the store; behind the last one the first ones, and where it has begun the sweep ends. */
    bool FindMore(CModelStore& store) {
        const auto keys = store.ModelsWithoutPreview(next, kKeysAtOnce);
        if (!keys) return false;
        for (const std::uint32_t key : keys.Value())
            if (!refused.contains(key) && (!isSecondRound || key < begin)) found.push_back(key);
        const bool isPageFull = keys.Value().size() == kKeysAtOnce;
        const std::uint32_t last =
            isPageFull ? keys.Value().back() : std::numeric_limits<std::uint32_t>::max();
        if (last != std::numeric_limits<std::uint32_t>::max() && !(isSecondRound && last >= begin)) {
            next = last + 1;
            return true;
        }
        isAllFound = isSecondRound;
        next = isSecondRound ? begin : 0;
        isSecondRound = !isSecondRound;
        return true;
    }

    /** False where the picture is to be tried again. */
    bool Draw(CModelStore& store, std::uint32_t key) {
        const CStatus status = DrawNow(store, workshop, key);
        const std::scoped_lock lock(mutex);
        if (status) {
            ++drawn;
        } else {
            if (!IsLasting(status.Error().code) && ++tries < kMostTries) return false;
            ++failed;
            if (refused.size() < kMostRefused) refused.insert(key);
        }
        tries = 0;
        return true;
    }

    const CStoreAddress address;
    CWorkshop& workshop;
    const COptions options;
    mutable std::mutex mutex;
    std::condition_variable_any changed;
    std::deque<std::uint32_t> waiting;
    std::uint64_t drawn = 0, failed = 0;
    bool sweeps;
    // The thread's alone:
    std::uint32_t begin = 0, next = 0;
    bool isSecondRound = false, isAllFound = false;
    std::deque<std::uint32_t> found;
    std::unordered_set<std::uint32_t> refused;  ///< what could not be drawn
    int tries = 0;                              ///< of the picture that is being drawn
    std::jthread thread;
};

CPreviewQueue::CPreviewQueue(CStoreAddress address, CWorkshop& workshop)
    : CPreviewQueue(std::move(address), workshop, COptions{}) {}

CPreviewQueue::CPreviewQueue(CStoreAddress address, CWorkshop& workshop, COptions options)
    : m_state(std::make_unique<CState>(std::move(address), workshop, options)) {}

CPreviewQueue::~CPreviewQueue() = default;

void CPreviewQueue::Add(std::uint32_t key) {
    m_state->Add(key);
}

CPreviewCounts CPreviewQueue::Counts() const {
    return m_state->Counts();
}

CStatus CPreviewQueue::DrawNow(CModelStore& store, CWorkshop& workshop, std::uint32_t key) {
    const CResult<CModelRecord> record = store.Model(key);
    if (!record) return record.Error();
    if (record.Value().preview) return CDone{};
    const auto input = CModelInput::OfStore(store, record.Value(), workshop.Folder());
    if (!input) return input.Error();
    const auto picture = workshop.DrawPreview(input.Value());
    if (!picture) return picture.Error();
    CResult<CNewBlob> blob = CBlobWriter::Write(&store, picture.Value());
    if (!blob) return blob.Error();
    return store.SetPreview(key, std::move(blob).Value());
}
