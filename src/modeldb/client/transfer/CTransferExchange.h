// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/CResult.h"
#include "modeldb/client/transfer/CTransferRequest.h"

/** One request and its answer, as the calls of libcurl see them: counts what comes, and hands it on. */
class CTransferExchange {
  public:
    using CClock = std::chrono::steady_clock;

    CTransferExchange(const CTransferRequest& request, CTransferWatcher& watcher)
        : m_request(request), m_watcher(watcher) {}

    // What libcurl calls. False, or nothing, ends the transfer.
    [[nodiscard]] bool TakeHeader(std::string_view line);
    [[nodiscard]] bool TakeBody(std::span<const std::byte> piece);
    [[nodiscard]] std::optional<std::size_t> GiveBody(std::span<std::byte> room);
    [[nodiscard]] bool RewindBody();
    /** One of these calls threw. */
    void RunOutOfMemory();

    /** Nothing as long as the exchange may go on: neither silent for too long, nor over its time, nor cancelled. */
    [[nodiscard]] std::optional<CError> ReasonToEnd(const CTransferTimes& times);
    /** Why one of the calls ended the transfer. */
    [[nodiscard]] const std::optional<CError>& Failure() const { return m_failure; }
    /** The silence or the deadline ended it. */
    [[nodiscard]] bool IsOutOfTime() const { return m_isOutOfTime; }
    /** The status of the answer has come, and of an answer that is no success all that is wanted of it. */
    [[nodiscard]] bool HasRefusal() const { return m_isHeadComplete && !m_answer.IsSuccess(); }
    [[nodiscard]] CTransferAnswer& Answer() { return m_answer; }

  private:
    void ReadHeader(std::string_view line);
    [[nodiscard]] bool EndHead();
    [[nodiscard]] bool Fail(CError error);

    const CTransferRequest& m_request;
    CTransferWatcher& m_watcher;
    CTransferAnswer m_answer;
    std::optional<CError> m_failure;
    bool m_isHeadComplete = false, m_isOutOfTime = false;
    std::uint64_t m_headerBytes = 0, m_bodyBytes = 0, m_sentBytes = 0;
    CClock::time_point m_started = CClock::now(), m_lastByte = m_started;
};
