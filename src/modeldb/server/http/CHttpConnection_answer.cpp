// SPDX-License-Identifier: MIT
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/sendfile.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "base/text/ascii_text.h"
#include "modeldb/server/http/CHttpConnection.h"
#include "modeldb/server/http/http_text.h"

namespace {

using CSteady = std::chrono::steady_clock;
constexpr std::uint64_t kBytesInATurn = 1 << 20;  // before other connections have theirs
constexpr int kReadsInARow = 8;
constexpr std::chrono::seconds kLingerIdle{2}, kLingerTime{10};

const std::string* TextOf(const CHttpAnswer& answer) {
    const auto* text = std::get_if<std::shared_ptr<const std::string>>(&answer.body);
    return text ? text->get() : nullptr;
}

iovec PartOf(std::string_view text, std::uint64_t from) {
    return {const_cast<char*>(text.data() + from), text.size() - from};
}

bool IsBlocked() {
    return errno == EAGAIN;
}

}  // namespace

void CHttpConnection::Refuse(int status, const char* why) {
    Guarded([&] { RefuseRequest(status, why); });
}

void CHttpConnection::RefuseRequest(int status, const char* why) {
    if (m_requestId == 0) BeginRecord();
    if (status == 400 || status == 414 || status == 417 || status == 431 || status == 505) {
        m_loop->Shared().meters.malformed.fetch_add(1);
    }
    m_bodyFile = {};
    m_bodyRoom.reset();
    m_input.clear();
    m_closesAfterAnswer = true;
    BeginAnswer(RefusalOf(status, why));
}

CHttpAnswer CHttpConnection::RefusalOf(int status, const char* why) const {
    const CHttpServerOptions& options = m_loop->Shared().options;
    CHttpAnswer answer;
    if (options.refusal) answer = options.refusal(status, why);
    if (!options.refusal || !CanBeSent(answer)) {
        answer = CHttpAnswer::OfText(status, "text/plain; charset=utf-8", std::string(why) + '\n');
    }
    answer.status = status;
    const bool isTold = std::ranges::any_of(answer.headers, [](const auto& header) {
        return ascii_text::EqualNoCase(header.first, "Retry-After");
    });
    if ((status == 429 || status == 503) && !isTold) {
        answer.headers.emplace_back("Retry-After", std::to_string(options.retryAfterSeconds));
    }
    return answer;
}

void CHttpConnection::BeginAnswer(CHttpAnswer answer) {
    CHttpShared& shared = m_loop->Shared();
    const bool wasDropped = answer.status == 500 && answer.contentType.empty() && answer.headers.empty() &&
                            std::holds_alternative<std::monostate>(answer.body);
    if (wasDropped || !CanBeSent(answer)) {
        shared.meters.faults.fetch_add(1);
        answer = RefusalOf(500, "the server failed");
    }
    m_answer = std::move(answer);
    m_closesAfterAnswer |= shared.stopping;
    m_answerHead.clear();
    AppendAnswerHead(m_answerHead, m_answer,
                     {m_loop->Date(), shared.options.serverName, m_closesAfterAnswer, m_head.isHttp10});
    const bool sendsBody = !m_isHead && !HasNoBody(m_answer.status);
    m_bodyToSend = sendsBody ? BodyBytesOf(m_answer) : 0;
    m_headSent = m_bodySent = 0;
    const auto now = CSteady::now();
    const double seconds = static_cast<double>(m_bodyToSend) / shared.options.answerBytesPerSecond;
    m_lastMoment = now + Steady(shared.options.answerGrace + std::chrono::duration<double>(seconds));
    m_deadline = std::min(m_lastMoment, now + Steady(shared.options.stallTime));
    m_takenBefore = 0;
    m_state = EState::Answer;
    ContinueAnswer();
}

void CHttpConnection::ContinueAnswer() {
    const std::uint64_t sentBefore = m_sentInAll;
    const EProgress progress = SendSome();
    m_loop->Shared().meters.sentBytes.fetch_add(m_sentInAll - sentBefore);
    switch (progress) {
        case EProgress::Done:
            return FinishAnswer();
        case EProgress::Failed:
            LogAnswer(CSteady::now());
            return Close();
        case EProgress::Blocked:
            if (m_sentInAll > sentBefore) {
                m_deadline =
                    std::min(m_lastMoment, CSteady::now() + Steady(m_loop->Shared().options.stallTime));
                (void)PeerTookSome();  // from here on
            }
            return AwaitWritable();
    }
}

CHttpConnection::EProgress CHttpConnection::SendSome() {
    const bool isFile = std::holds_alternative<CHttpFile>(m_answer.body);
    const std::uint64_t textBytes = m_answerHead.size() + (isFile ? 0 : m_bodyToSend);
    while (m_headSent + (isFile ? 0 : m_bodySent) < textBytes) {
        const EProgress progress = SendTexts();
        if (progress != EProgress::Done) return progress;
    }
    const std::uint64_t turnEnd = m_bodySent + kBytesInATurn;
    while (m_bodySent < m_bodyToSend) {
        if (m_bodySent >= turnEnd) return EProgress::Blocked;
        const EProgress progress = SendFile();
        if (progress != EProgress::Done) return progress;
    }
    return EProgress::Done;
}

// One call of the system for the head and a body in memory.
CHttpConnection::EProgress CHttpConnection::SendTexts() {
    std::array<iovec, 2> parts{};
    std::size_t count = 0;
    const std::string* body = m_bodyToSend > 0 ? TextOf(m_answer) : nullptr;
    if (m_headSent < m_answerHead.size()) parts[count++] = PartOf(m_answerHead, m_headSent);
    if (body) parts[count++] = PartOf(*body, m_bodySent);
    msghdr message{};
    message.msg_iov = parts.data();
    message.msg_iovlen = count;
    const int more = !body && m_bodyToSend > 0 ? MSG_MORE : 0;  // a file follows, in the same packet
    const ssize_t sent = ::sendmsg(m_socket.native_handle(), &message, MSG_DONTWAIT | MSG_NOSIGNAL | more);
    if (sent < 0 && errno == EINTR) return EProgress::Done;
    if (sent < 0) return IsBlocked() ? EProgress::Blocked : EProgress::Failed;
    const auto bytes = static_cast<std::uint64_t>(sent);
    const std::uint64_t ofHead = std::min(bytes, m_answerHead.size() - m_headSent);
    m_headSent += ofHead;
    m_bodySent += bytes - ofHead;
    m_sentInAll += bytes;
    return EProgress::Done;
}

CHttpConnection::EProgress CHttpConnection::SendFile() {
    const auto& file = std::get<CHttpFile>(m_answer.body);
    auto offset = static_cast<off_t>(file.offset + m_bodySent);
    const std::uint64_t count = std::min(m_bodyToSend - m_bodySent, kBytesInATurn);
    const ssize_t sent = ::sendfile(m_socket.native_handle(), file.file->Get(), &offset, count);
    if (sent < 0 && errno == EINTR) return EProgress::Done;
    if (sent < 0 && IsBlocked()) return EProgress::Blocked;
    if (sent <= 0) {
        // The file has less than was promised, or cannot be read: the client must not take this for the whole.
        m_loop->Shared().meters.faults.fetch_add(sent == 0 ? 1 : 0);
        return EProgress::Failed;
    }
    m_bodySent += static_cast<std::uint64_t>(sent);
    m_sentInAll += static_cast<std::uint64_t>(sent);
    return EProgress::Done;
}

void CHttpConnection::FinishAnswer() {
    LogAnswer(CSteady::now());
    m_answer = {};
    if (m_closesAfterAnswer) return BeginLinger();
    NextRequest();
}

void CHttpConnection::LogAnswer(Time now) {
    CHttpShared& shared = m_loop->Shared();
    const CSteady::duration time = now - m_requestStart;
    shared.meters.CountAnswer(m_answer.status, time);
    if (!shared.options.log) return;
    CLoggedRequest logged;
    logged.microsecondsSinceEpoch = std::chrono::duration_cast<std::chrono::microseconds>(
                                        std::chrono::system_clock::now().time_since_epoch())
                                        .count();
    logged.id = m_requestId;
    const std::string client = m_client.Text();
    logged.peer = client;
    logged.method = m_head.methodText;
    logged.target = m_target;
    logged.status = m_answer.status;
    logged.receivedBytes = m_bodyBytes - m_bodyLeft;
    logged.sentBytes = m_bodySent;
    logged.milliseconds = std::chrono::duration<double, std::milli>(time).count();
    std::string& line = m_loop->EmptyText();
    AppendLogLine(line, logged);
    shared.options.log(line);
}

// Reads on for a moment after the last answer: a socket that is closed with bytes unread takes the answer back.
void CHttpConnection::BeginLinger() {
    boost::system::error_code error;
    m_socket.shutdown(boost::asio::ip::tcp::socket::shutdown_send, error);
    if (error) return Close();
    m_state = EState::Linger;
    const auto now = CSteady::now();
    m_lastMoment = now + kLingerTime;
    m_deadline = now + kLingerIdle;
    AwaitReadable();
}

void CHttpConnection::Drain() {
    for (int i = 0; i < kReadsInARow; ++i) {
        const std::optional<std::size_t> count = Receive(m_loop->Scratch());
        if (!count) return;
        if (*count == 0) break;
        m_deadline = std::min(m_lastMoment, CSteady::now() + kLingerIdle);
    }
    AwaitReadable();
}

// Whether the peer has taken bytes out of the system's buffer since this was asked last.
bool CHttpConnection::PeerTookSome() {
    int unsent = 0;
    if (::ioctl(m_socket.native_handle(), SIOCOUTQ, &unsent) != 0) return false;
    const std::uint64_t taken =
        m_sentInAll - std::min<std::uint64_t>(m_sentInAll, static_cast<std::uint64_t>(unsent));
    return std::exchange(m_takenBefore, std::max(taken, m_takenBefore)) < taken;
}
