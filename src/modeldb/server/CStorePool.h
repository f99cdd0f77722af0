// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

#include "base/CResult.h"
#include "modeldb/store/CModelStore.h"

/** A server's connections to its store. Each is lent to one thread at a time, so there are never more than threads that ask
 * at once. Any thread. */
class CStorePool {
  public:
    /** Opens the store; a file that is not there is made, an old store brought up to date. Errors are CModelStore's. */
    [[nodiscard]] static CResult<std::unique_ptr<CStorePool>> Open(const CStoreAddress& address);

    /** True where a lookup takes microseconds and waits for no network, so that an I/O thread may do it. */
    [[nodiscard]] bool IsQuick() const { return m_address.kind == CStoreAddress::EKind::File; }

    /** What work, a function of a CModelStore&, gives: some CResult. Busy at once where the database's server was away a
     * moment ago, so that not all threads wait for it; every second one tries again. */
    template <class Work>
    [[nodiscard]] auto Run(Work work) -> decltype(work(std::declval<CModelStore&>())) {
        if (IsAway()) return AwayError();
        CResult<std::unique_ptr<CModelStore>> store = Lend();
        if (!store) {
            Note(&store.Error());
            return store.Error();
        }
        auto result = work(*store.Value());
        GiveBack(std::move(store).Value());
        Note(result ? nullptr : &result.Error());
        return result;
    }

  private:
    explicit CStorePool(CStoreAddress address) : m_address(std::move(address)) {}
    [[nodiscard]] CResult<std::unique_ptr<CModelStore>> Lend();
    void GiveBack(std::unique_ptr<CModelStore> store);
    [[nodiscard]] bool IsAway();
    [[nodiscard]] static CError AwayError();
    /** error: null for a success. */
    void Note(const CError* error);

    const CStoreAddress m_address;
    std::mutex m_mutex;
    std::vector<std::unique_ptr<CModelStore>> m_idle;  ///< the last one used lies on top
    bool m_isAway = false;
    std::chrono::steady_clock::time_point m_nextTry{};  ///< while it is away
};
