// SPDX-License-Identifier: MIT
#include "modeldb/server/work/CViewPages.h"

#include <future>
#include <list>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <utility>

#include "modeldb/records/store_records.h"

namespace {

/** All of a model but its preview stays as it was added, so these say which page it is. */
using CPageKey = std::pair<std::uint32_t, CBlobHash>;
using CPage = CResult<CMadePage>;

std::uint64_t BytesOf(const CPage& page) {
    return page ? page.Value().bytes : 0;
}

/** A failure that the next try would have, too, is kept as a page is: it may have taken long. */
bool IsKept(const CPage& page) {
    return page || page.Error().code == EErrorCode::BadFormat || page.Error().code == EErrorCode::TooLarge;
}

}  // namespace

struct CViewPages::CState {
    CState(CWorkshop& shop, COptions wanted) : workshop(shop), options(wanted) {}

    struct CKept {
        CPageKey key;
        CPage page;
    };

    /** The kept page, which is then the one that was used last. */
    std::optional<CPage> Find(const CPageKey& key) {
        const auto found = places.find(key);
        if (found == places.end()) return std::nullopt;
        kept.splice(kept.begin(), kept, found->second);
        return found->second->page;
    }

    void Keep(const CPageKey& key, const CPage& page) {
        if (!IsKept(page) || BytesOf(page) > options.bytes) return;
        kept.push_front({key, page});
        places[key] = kept.begin();
        bytes += BytesOf(page);
        while (bytes > options.bytes || kept.size() > options.pages) {
            bytes -= BytesOf(kept.back().page);
            places.erase(kept.back().key);
            kept.pop_back();
        }
    }

    CPage Make(CModelStore& store, const CModelRecord& record) const {
        try {
            const auto input = CModelInput::OfStore(store, record, workshop.Folder());
            if (!input) return input.Error();
            return workshop.MakePage(input.Value());
        } catch (const std::bad_alloc&) {  // others wait for an answer
            return CError{EErrorCode::Busy, "there is not enough memory now", {}};
        }
    }

    CWorkshop& workshop;
    const COptions options;
    std::mutex mutex;
    std::list<CKept> kept;  ///< the one that was used last first
    std::map<CPageKey, std::list<CKept>::iterator> places;
    std::uint64_t bytes = 0;
    std::map<CPageKey, std::shared_future<CPage>> making;  ///< shared with those who wait for it
    std::size_t waiting = 0;
};

CViewPages::CViewPages(CWorkshop& workshop) : CViewPages(workshop, COptions{}) {}

CViewPages::CViewPages(CWorkshop& workshop, COptions options)
    : m_state(std::make_unique<CState>(workshop, options)) {}

CViewPages::~CViewPages() = default;

CResult<CMadePage> CViewPages::Get(CModelStore& store, const CModelRecord& record) {
    const CPageKey key{record.key, record.file.hash};
    std::promise<CPage> promise;
    std::shared_future<CPage> others;
    {
        const std::scoped_lock lock(m_state->mutex);
        if (std::optional<CPage> page = m_state->Find(key)) return *std::move(page);
        if (m_state->waiting == m_state->options.waiting)
            return CError{EErrorCode::Busy, "too many pages are being made", {}};
        ++m_state->waiting;
        const auto [making, isNew] = m_state->making.try_emplace(key);
        if (isNew)
            making->second = promise.get_future().share();
        else
            others = making->second;
    }
    CPage page = others.valid() ? others.get() : m_state->Make(store, record);
    const std::scoped_lock lock(m_state->mutex);
    --m_state->waiting;
    if (others.valid()) return page;
    m_state->Keep(key, page);
    m_state->making.erase(key);
    promise.set_value(page);
    return page;
}
