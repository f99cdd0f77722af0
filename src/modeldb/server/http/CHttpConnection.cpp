// SPDX-License-Identifier: MIT
#include "modeldb/server/http/CHttpConnection.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace {
using CSteady = std::chrono::steady_clock;
using tcp = boost::asio::ip::tcp;

}  // namespace

CHttpConnection::CHttpConnection(std::shared_ptr<CHttpLoop> loop, tcp::socket socket,
                                 const CPeerAddress& peer, EAdmission admission)
    : m_loop(std::move(loop)), m_socket(std::move(socket)), m_peer(peer), m_admission(admission) {
    m_loop->Shared().ConnectionOpened();
    if (m_admission == EAdmission::Refused) m_loop->Shared().refusedOpen.fetch_add(1);
}

CHttpConnection::~CHttpConnection() = default;

void CHttpConnection::Begin() {
    if (m_loop->Shared().stopping) return Close();
    m_deadline = CSteady::now() + Steady(m_loop->Shared().options.headTime);
    AwaitReadable();
}

void CHttpConnection::AwaitReadable() {
    if (m_isWaiting || m_state == EState::Closed) return;
    m_isWaiting = true;
    m_socket.async_wait(tcp::socket::wait_read,
                        [self = shared_from_this()](const boost::system::error_code& error) {
                            self->m_isWaiting = false;
                            if (self->m_state == EState::Closed) return;
                            if (error) return self->Close();
                            self->Guarded([&] { self->OnReadable(); });
                        });
}

void CHttpConnection::AwaitWritable() {
    if (m_isWaiting || m_state == EState::Closed) return;
    m_isWaiting = true;
    m_socket.async_wait(tcp::socket::wait_write,
                        [self = shared_from_this()](const boost::system::error_code& error) {
                            self->m_isWaiting = false;
                            if (self->m_state == EState::Closed) return;
                            if (error) return self->Close();
                            self->Guarded([&] { self->OnWritable(); });
                        });
}

void CHttpConnection::OnReadable() {
    switch (m_state) {
        case EState::Head:
            return ReadHead();
        case EState::Body:
            return ReadBody();
        case EState::Linger:
            return Drain();
        case EState::Site:
        case EState::Answer:
        case EState::Closed:
            return;
    }
}

void CHttpConnection::OnWritable() {
    if (m_state != EState::Answer) return;
    ContinueAnswer();
    AnswerBuffered();
}

// Nothing: the connection has ended, and was closed here. 0: nothing is there at the moment.
std::optional<std::size_t> CHttpConnection::Receive(std::span<char> room) {
    for (;;) {
        const ssize_t count = ::recv(m_socket.native_handle(), room.data(), room.size(), MSG_DONTWAIT);
        if (count > 0) {
            m_loop->Shared().meters.receivedBytes.fetch_add(static_cast<std::uint64_t>(count));
            return static_cast<std::size_t>(count);
        }
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) return 0;
        Close();
        return std::nullopt;
    }
}

void CHttpConnection::ReadHead() {
    const CHttpServerOptions& options = m_loop->Shared().options;
    const std::span<char> room = m_loop->Scratch().first(options.headBytes - m_input.size());
    const std::optional<std::size_t> count = Receive(room);
    if (!count) return;
    if (m_input.empty() && *count > 0) m_deadline = CSteady::now() + Steady(options.headTime);
    m_input.append(room.data(), *count);
    AnswerBuffered();
}

// Answers the requests that have come, one after the other, as far as that goes without waiting.
void CHttpConnection::AnswerBuffered() {
    while (m_state == EState::Head) {
        // Some clients end a body with an empty line that belongs to nothing.
        if (m_scan.HeadBytes() == 0 && m_input.starts_with("\r\n")) m_input.erase(0, 2);
        switch (m_scan.Look(m_input)) {
            case CHeadScan::EState::Whole:
                BeginRequest();
                break;
            case CHeadScan::EState::Malformed:
                return RefuseRequest(400, "bad request");
            case CHeadScan::EState::Partial:
                if (m_input.size() >= m_loop->Shared().options.headBytes) {
                    return RefuseRequest(431, "the header is too large");
                }
                return AwaitReadable();
        }
    }
}

// A request has come, or what should have been one.
void CHttpConnection::BeginRecord() {
    m_requestStart = CSteady::now();
    m_requestId = m_loop->Shared().lastId.fetch_add(1) + 1;
    m_head = {};
    m_isHead = false;
    m_target.clear();
    m_client = m_peer;
    m_bodyBytes = m_bodyLeft = 0;
}

void CHttpConnection::BeginRequest() {
    BeginRecord();
    CHttpRequest& request = m_head.request;
    const std::optional<CHeadFault> fault =
        ParseHead(std::string_view(m_input).substr(0, m_scan.HeadBytes()), m_head);
    m_input.erase(0, m_scan.HeadBytes());
    m_client = m_loop->Shared().proxies.ClientOf(m_peer, m_head.forwardedFor);
    m_target = request.target;
    request.id = m_requestId;
    request.peer = m_client.Text();
    if (fault) return RefuseRequest(fault->status, fault->why);
    m_isHead = request.method == EHttpMethod::Head;
    m_closesAfterAnswer = !m_head.keepAlive;
    if (!IsAdmitted()) return;
    if (request.method == EHttpMethod::Post) return BeginBody();
    if (HasBody()) {
        if (request.method != EHttpMethod::Other) return RefuseRequest(400, "a body is not taken here");
        m_closesAfterAnswer = true;
    }
    CallSite();
}

bool CHttpConnection::HasBody() const {
    return m_head.request.bodyBytes > 0 || m_head.request.HasHeader("Transfer-Encoding");
}

// False, and the request is refused, when its peer or all together ask too much.
bool CHttpConnection::IsAdmitted() {
    CHttpShared& shared = m_loop->Shared();
    if (!shared.proxies.IsTrusted(m_client) && !shared.peers.TakeRequest(m_client, m_requestStart)) {
        shared.meters.refusedPeers.fetch_add(1);
        m_closesAfterAnswer |= HasBody();
        BeginAnswer(RefusalOf(429, "too many requests"));
        return false;
    }
    if (shared.meters.waitingRequests < shared.options.waitingRequests) return true;
    shared.meters.refusedBusy.fetch_add(1);
    m_closesAfterAnswer |= HasBody();
    BeginAnswer(RefusalOf(503, "too much is asked at the moment"));
    return false;
}

void CHttpConnection::NextRequest() {
    const CHttpServerOptions& options = m_loop->Shared().options;
    m_state = EState::Head;
    m_requestId = 0;
    m_scan = {};
    m_deadline = CSteady::now() + Steady(m_input.empty() ? options.idleTime : options.headTime);
}

void CHttpConnection::CheckTime(Time now) {
    if (m_state != EState::Closed && now >= m_deadline) Guarded([&] { OnTimeOut(now); });
}

void CHttpConnection::OnTimeOut(Time now) {
    CHttpShared& shared = m_loop->Shared();
    if (m_state == EState::Answer && now < m_lastMoment && PeerTookSome()) {
        m_deadline = std::min(m_lastMoment, now + Steady(shared.options.stallTime));
        return;
    }
    const bool isIdle = m_state == EState::Linger || (m_state == EState::Head && m_input.empty());
    if (!isIdle) shared.meters.timedOut.fetch_add(1);
    if (m_state == EState::Site) {
        m_closesAfterAnswer = true;
        return BeginAnswer(RefusalOf(503, "this takes too long"));
    }
    if (!isIdle && m_state != EState::Answer) return RefuseRequest(408, "the request came too slowly");
    if (m_state == EState::Answer) {
        // What the peer does not take would stay in the system's buffers.
        boost::system::error_code ignored;
        m_socket.set_option(boost::asio::socket_base::linger(true, 0), ignored);
    }
    Close();
}

void CHttpConnection::CloseIfIdle() {
    if (m_state == EState::Head && m_input.empty()) Close();
}

void CHttpConnection::Close() {
    if (m_state == EState::Closed) return;
    m_state = EState::Closed;
    CHttpShared& shared = m_loop->Shared();
    const std::shared_ptr<CHttpConnection> self = shared_from_this();
    m_loop->Remove(*this);
    boost::system::error_code ignored;
    m_socket.close(ignored);
    m_bodyFile = {};
    m_bodyRoom.reset();
    m_answer = {};
    m_input = {};
    if (m_admission == EAdmission::Counted) shared.peers.Disconnect(m_peer);
    if (m_admission == EAdmission::Refused) shared.refusedOpen.fetch_sub(1);
    shared.ConnectionClosed();
}
