// SPDX-License-Identifier: MIT
#include "modeldb/server/CStorePool.h"

#include "modeldb/database/postgres_errors.h"

namespace {

constexpr std::chrono::seconds kPause{1};  ///< before a server that was away is asked again

}  // namespace

CResult<std::unique_ptr<CStorePool>> CStorePool::Open(const CStoreAddress& address) {
    CResult<CModelStore> store = CModelStore::Open(address, EStoreUse::Create);
    if (!store) return store.Error();
    std::unique_ptr<CStorePool> pool(new CStorePool(address));
    pool->GiveBack(std::make_unique<CModelStore>(std::move(store).Value()));
    return pool;
}

CResult<std::unique_ptr<CModelStore>> CStorePool::Lend() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_idle.empty()) {
            std::unique_ptr<CModelStore> store = std::move(m_idle.back());
            m_idle.pop_back();
            return store;
        }
    }
    CResult<CModelStore> store = CModelStore::Open(m_address, EStoreUse::Write);
    if (!store) return store.Error();
    return std::make_unique<CModelStore>(std::move(store).Value());
}

void CStorePool::GiveBack(std::unique_ptr<CModelStore> store) {
    const std::lock_guard lock(m_mutex);
    m_idle.push_back(std::move(store));
}

bool CStorePool::IsAway() {
    if (IsQuick()) return false;
    const std::lock_guard lock(m_mutex);
    if (!m_isAway) return false;
    const auto now = std::chrono::steady_clock::now();
    if (now < m_nextTry) return true;
    m_nextTry = now + kPause;  // this thread tries, the others wait for its outcome
    return false;
}

CError CStorePool::AwayError() {
    return {EErrorCode::Busy, "the database cannot be reached", {}};
}

void CStorePool::Note(const CError* error) {
    if (IsQuick()) return;
    const bool isAway = error && IsUnreachable(*error);
    const std::lock_guard lock(m_mutex);
    m_isAway = isAway;
    if (isAway) m_nextTry = std::chrono::steady_clock::now() + kPause;
}
