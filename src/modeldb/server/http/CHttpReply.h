// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "modeldb/server/http/CHttpAnswer.h"

/** Where the answer to one request goes: the server's connection, or a test. */
class CHttpAnswerTaker {
  public:
    virtual ~CHttpAnswerTaker() = default;
    /** Called at most once for each request, on any thread. Must not throw. */
    virtual void TakeAnswer(std::uint64_t requestId, CHttpAnswer answer) noexcept = 0;
};

/** The right to answer one request, once, from any thread and at any time, also after the server or the client has gone (the
 * answer then goes nowhere). Dropped without Send, it answers 500, so that no client waits for ever. While it is held
 * the request counts as waiting (CHttpServerOptions::waitingRequests). */
class CHttpReply {
  public:
    CHttpReply() = default;
    CHttpReply(std::shared_ptr<CHttpAnswerTaker> taker, std::uint64_t requestId)
        : m_taker(std::move(taker)), m_requestId(requestId) {}
    CHttpReply(CHttpReply&&) noexcept = default;
    CHttpReply& operator=(CHttpReply&& other) noexcept {
        if (this != &other) {
            Drop();
            m_taker = std::move(other.m_taker);
            m_requestId = other.m_requestId;
        }
        return *this;
    }
    ~CHttpReply() { Drop(); }

    /** Answers; a second call does nothing. Does not block: the bytes go out on a thread of the server. */
    void Send(CHttpAnswer answer) {
        if (const std::shared_ptr<CHttpAnswerTaker> taker = std::move(m_taker)) {
            taker->TakeAnswer(m_requestId, std::move(answer));
        }
    }
    /** False after Send, and for one that was moved from. */
    [[nodiscard]] bool IsOpen() const { return m_taker != nullptr; }

  private:
    void Drop() noexcept {
        if (m_taker) Send({500, {}, {}, {}});
    }

    std::shared_ptr<CHttpAnswerTaker> m_taker;  // shared with the connection, which may end first
    std::uint64_t m_requestId = 0;
};
