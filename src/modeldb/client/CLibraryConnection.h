// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>

#include "base/CResult.h"
#include "modeldb/client/CModelLibrary.h"

/** What C3DModelsLoadApi keeps between its calls: the library that is open, how the last call ended, who is told of a lost
 * connection. Any thread. */
class CLibraryConnection {
  public:
    /** The process's. */
    [[nodiscard]] static CLibraryConnection& Instance();

    /** See C3DModelsLoadApi::Open. */
    [[nodiscard]] CStatus Open(const std::string& address);
    void Close();
    /** Null: none is open. The caller is its second owner, so that it lasts as long as the call. */
    [[nodiscard]] std::shared_ptr<CModelLibrary> Library() const;

    void SetToken(std::string token);
    void SetLostListener(std::function<void()> listener);

    /** How a call ended: with an error, or well. */
    void Note(std::optional<CError> error);
    [[nodiscard]] std::optional<CError> LastError() const;

    /** Keeps the counts of a list of groups for a short time. */
    void KeepCounts(std::span<const CGroupRecord> groups);
    /** A kept count, which is given once. */
    [[nodiscard]] std::optional<std::uint64_t> TakeCount(const std::string& group);
    void ForgetCounts();

  private:
    using CClock = std::chrono::steady_clock;
    [[nodiscard]] CResult<std::shared_ptr<CModelLibrary>> LibraryAt(const std::string& address);
    void TellLost() const;

    mutable std::mutex m_mutex;  ///< guards all
    std::shared_ptr<CModelLibrary> m_library;
    std::string m_address, m_libraryToken;  ///< of the library
    std::string m_token;
    std::function<void()> m_lostListener;
    std::optional<CError> m_lastError;
    std::map<std::string, std::uint64_t, std::less<>> m_counts;
    CClock::time_point m_countsEnd;
};
