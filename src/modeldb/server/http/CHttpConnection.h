// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "modeldb/server/http/CHttpLoop.h"
#include "modeldb/server/http/http_head.h"

/** One client's connection: reads a head, its body, has the site answer, sends that, and begins anew. While a request is
 * answered nothing is read, so requests that were sent ahead wait in the system's buffers. All functions but TakeAnswer
 * are of the loop's thread. Sockets are only waited for; reading and writing is tried at once and never blocks. */
class CHttpConnection final : public CHttpAnswerTaker, public std::enable_shared_from_this<CHttpConnection> {
  public:
    using Time = std::chrono::steady_clock::time_point;

    enum class EAdmission {
        Free,     ///< its peer is not counted
        Counted,  ///< CHttpPeers::Connect was called for it; the end of the connection calls Disconnect
        Refused,  ///< it is only told why
    };
    /** A connection that was accepted; the socket does not block. */
    CHttpConnection(std::shared_ptr<CHttpLoop> loop, boost::asio::ip::tcp::socket socket,
                    const CPeerAddress& peer, EAdmission admission);
    ~CHttpConnection() override;

    /** Reads the first request. The loop has it already, here and for Refuse. */
    void Begin();
    /** Tells status and line instead, and closes. */
    void Refuse(int status, const char* why);
    /** Ends what takes too long. */
    void CheckTime(Time now);
    void CloseIfIdle();
    void Close();

    /** The place in the loop's list. */
    [[nodiscard]] std::size_t Place() const { return m_place; }
    void SetPlace(std::size_t place) { m_place = place; }

    void TakeAnswer(std::uint64_t requestId, CHttpAnswer answer) noexcept override;

  private:
    enum class EState { Head, Body, Site, Answer, Linger, Closed };
    enum class EProgress { Done, Blocked, Failed };

    // CHttpConnection.cpp: waiting, heads, time.
    void AwaitReadable();
    void AwaitWritable();
    void OnReadable();
    void OnWritable();
    // What is thrown (memory, in the main) ends this connection and nothing else.
    template <class Work>
    void Guarded(Work work) {
        try {
            work();
        } catch (...) {
            m_loop->Shared().meters.faults.fetch_add(1);
            Close();
        }
    }
    [[nodiscard]] std::optional<std::size_t> Receive(std::span<char> room);
    void ReadHead();
    void AnswerBuffered();
    void BeginRequest();
    void BeginRecord();
    [[nodiscard]] bool HasBody() const;
    [[nodiscard]] bool IsAdmitted();
    void NextRequest();
    void OnTimeOut(Time now);

    // CHttpConnection_body.cpp: bodies, and calls of the site.
    void BeginBody();
    [[nodiscard]] bool OpenSpool();
    [[nodiscard]] bool SendContinue();
    void ReadBody();
    [[nodiscard]] bool KeepBodyBytes(std::string_view bytes);
    void CallSite();
    void FinishBody();

    // CHttpConnection_answer.cpp: answers.
    void RefuseRequest(int status, const char* why);
    [[nodiscard]] CHttpAnswer RefusalOf(int status, const char* why) const;
    void BeginAnswer(CHttpAnswer answer);
    void ContinueAnswer();
    [[nodiscard]] EProgress SendSome();
    [[nodiscard]] EProgress SendTexts();
    [[nodiscard]] EProgress SendFile();
    void FinishAnswer();
    void LogAnswer(Time now);
    void BeginLinger();
    void Drain();
    [[nodiscard]] bool PeerTookSome();

    std::shared_ptr<CHttpLoop> m_loop;  // shared with the server; a reply that is held keeps both
    boost::asio::ip::tcp::socket m_socket;
    CPeerAddress m_peer;    // at the other end of the socket
    CPeerAddress m_client;  // the same, or who is behind a trusted proxy
    EAdmission m_admission;
    std::size_t m_place = 0;

    EState m_state = EState::Head;
    bool m_isWaiting = false;  // the system was asked to tell when something can be read or written

    std::string m_input;  // came and was not looked at
    CHeadScan m_scan;
    CHttpHead m_head;
    std::uint64_t m_requestId = 0;  // 0 between requests
    std::string m_target;           // for the log, as the site takes the request
    bool m_isHead = false;
    std::uint64_t m_bodyBytes = 0, m_bodyLeft = 0;
    CFileDescriptor m_bodyFile;
    std::shared_ptr<void> m_bodyRoom;
    bool m_inSite = false;

    CHttpAnswer m_answer;
    std::optional<CHttpAnswer> m_givenAnswer;  // by the site while it was called
    std::string m_answerHead;
    std::uint64_t m_headSent = 0, m_bodySent = 0, m_bodyToSend = 0;
    bool m_closesAfterAnswer = false;

    Time m_deadline{};    // when the state ends if nothing happens
    Time m_lastMoment{};  // when it ends, whatever happens
    Time m_requestStart{};
    std::uint64_t m_sentInAll = 0, m_takenBefore = 0;
};
