// SPDX-License-Identifier: MIT
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "modeldb/server/http/CHttpConnection.h"

namespace {
constexpr int kReadsInARow = 8;  // before other connections have their turn

}  // namespace

void CHttpConnection::BeginBody() {
    CHttpShared& shared = m_loop->Shared();
    if (!m_head.hasLength) return RefuseRequest(411, "a Content-Length is needed");
    m_bodyBytes = m_bodyLeft = m_head.request.bodyBytes;
    if (m_bodyBytes > shared.options.bodyBytes) return RefuseRequest(413, "the body is too large");
    std::optional<CHttpAnswer> refused;
    try {
        refused = shared.site.RefuseBody(m_head.request);
    } catch (...) {
        shared.meters.faults.fetch_add(1);
        refused = RefusalOf(500, "the server failed");
    }
    if (refused) {
        m_closesAfterAnswer |= m_bodyBytes > 0;
        return BeginAnswer(std::move(*refused));
    }
    if (m_bodyBytes == 0) return CallSite();
    if (!OpenSpool()) {
        shared.meters.refusedBusy.fetch_add(1);
        return RefuseRequest(503, "there is no room for the body at the moment");
    }
    const auto now = std::chrono::steady_clock::now();
    const double seconds = static_cast<double>(m_bodyBytes) / shared.options.bodyBytesPerSecond;
    m_lastMoment = now + Steady(shared.options.bodyGrace + std::chrono::duration<double>(seconds));
    m_deadline = std::min(m_lastMoment, now + Steady(shared.options.stallTime));
    m_state = EState::Body;
    const std::string came = m_input.substr(0, std::min<std::uint64_t>(m_input.size(), m_bodyLeft));
    m_input.erase(0, came.size());
    if (came.empty() && m_head.expectsContinue && !SendContinue()) return Close();
    if (!KeepBodyBytes(came)) return;
    if (m_bodyLeft == 0) return FinishBody();
    AwaitReadable();
}

bool CHttpConnection::OpenSpool() {
    CHttpSpool& spool = m_loop->Shared().spool;
    m_bodyRoom = spool.Reserve(m_bodyBytes);
    if (!m_bodyRoom) return false;
    CResult<CFileDescriptor> file = spool.OpenFile();
    if (!file) {
        m_bodyRoom.reset();
        return false;
    }
    m_bodyFile = std::move(file).Value();
    return true;
}

bool CHttpConnection::SendContinue() {
    constexpr std::string_view kContinue = "HTTP/1.1 100 Continue\r\n\r\n";
    const ssize_t sent =
        ::send(m_socket.native_handle(), kContinue.data(), kContinue.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent > 0) m_sentInAll += static_cast<std::uint64_t>(sent);
    return sent == static_cast<ssize_t>(kContinue.size());
}

void CHttpConnection::ReadBody() {
    for (int i = 0; i < kReadsInARow; ++i) {
        const std::span<char> scratch = m_loop->Scratch();
        const std::span<char> room = scratch.first(std::min<std::uint64_t>(scratch.size(), m_bodyLeft));
        const std::optional<std::size_t> count = Receive(room);
        if (!count) return;
        if (*count == 0) break;
        m_deadline = std::min(m_lastMoment,
                              std::chrono::steady_clock::now() + Steady(m_loop->Shared().options.stallTime));
        if (!KeepBodyBytes({room.data(), *count})) return;
        if (m_bodyLeft == 0) {
            FinishBody();
            return AnswerBuffered();
        }
    }
    AwaitReadable();
}

// False, and the request is refused, when they cannot be written.
bool CHttpConnection::KeepBodyBytes(std::string_view bytes) {
    m_bodyLeft -= bytes.size();
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_bodyFile.Get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            m_loop->Shared().meters.refusedBusy.fetch_add(1);
            RefuseRequest(503, "there is no room for the body at the moment");
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void CHttpConnection::FinishBody() {
    if (::lseek(m_bodyFile.Get(), 0, SEEK_SET) != 0) return RefuseRequest(500, "the server failed");
    CallSite();
}

void CHttpConnection::CallSite() {
    CHttpShared& shared = m_loop->Shared();
    m_state = EState::Site;
    m_deadline = std::chrono::steady_clock::now() + Steady(shared.options.siteTime);
    m_givenAnswer.reset();
    shared.meters.waitingRequests.fetch_add(1);
    m_inSite = true;
    try {
        CHttpReply reply(shared_from_this(), m_requestId);
        if (m_head.request.method == EHttpMethod::Post) {
            CHttpBody body(std::move(m_bodyFile), m_bodyBytes, std::move(m_bodyRoom));
            shared.site.AnswerBody(std::move(m_head.request), std::move(body), std::move(reply));
        } else {
            shared.site.Answer(std::move(m_head.request), std::move(reply));
        }
    } catch (...) {
        // The reply was dropped on the way, which has answered.
        shared.meters.faults.fetch_add(1);
    }
    m_inSite = false;
    if (m_givenAnswer) BeginAnswer(*std::exchange(m_givenAnswer, std::nullopt));
}

void CHttpConnection::TakeAnswer(std::uint64_t requestId, CHttpAnswer answer) noexcept {
    CHttpShared& shared = m_loop->Shared();
    shared.meters.waitingRequests.fetch_sub(1);
    try {
        if (m_loop->IsThisThread() && m_inSite && requestId == m_requestId) {
            m_givenAnswer = std::move(answer);
            return;
        }
        m_loop->Post([self = shared_from_this(), requestId, answer = std::move(answer)]() mutable {
            if (self->m_state != EState::Site || requestId != self->m_requestId) return;
            self->Guarded([&] {
                self->BeginAnswer(std::move(answer));
                self->AnswerBuffered();
            });
        });
    } catch (...) {
        // No memory: the client is told when the site's time has passed.
        shared.meters.faults.fetch_add(1);
    }
}
