// SPDX-License-Identifier: MIT
#include "modeldb/server/http/CHttpListener.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <exception>

#include "files/system_error.h"
#include "modeldb/server/http/CHttpConnection.h"

namespace {

using tcp = boost::asio::ip::tcp;
using EAdmission = CHttpConnection::EAdmission;
constexpr int kBacklog = 1024, kAcceptsInARow = 64, kPortTries = 10;
constexpr std::uint64_t kRefusedOpen = 256;
constexpr std::chrono::milliseconds kPauseTime{200};

struct CSocketAddress {
    sockaddr_storage storage{};
    socklen_t bytes = 0;

    [[nodiscard]] sockaddr* Get() { return reinterpret_cast<sockaddr*>(&storage); }
};

CSocketAddress AddressOf(const CPeerAddress& address, int port) {
    CSocketAddress result;
    const in_port_t networkPort = htons(static_cast<std::uint16_t>(port));
    if (address.IsIpv4()) {
        auto& ipv4 = reinterpret_cast<sockaddr_in&>(result.storage);
        ipv4.sin_family = AF_INET;
        ipv4.sin_port = networkPort;
        std::memcpy(&ipv4.sin_addr, address.bytes.data() + 12, 4);
        result.bytes = sizeof ipv4;
    } else {
        auto& ipv6 = reinterpret_cast<sockaddr_in6&>(result.storage);
        ipv6.sin6_family = AF_INET6;
        ipv6.sin6_port = networkPort;
        std::memcpy(&ipv6.sin6_addr, address.bytes.data(), 16);
        result.bytes = sizeof ipv6;
    }
    return result;
}

int PortOf(const CFileDescriptor& socket) {
    CSocketAddress address;
    address.bytes = sizeof address.storage;
    if (::getsockname(socket.Get(), address.Get(), &address.bytes) != 0) return 0;
    return ntohs(
        reinterpret_cast<const sockaddr_in&>(address.storage).sin_port);  // at one place for both families
}

// 0 or an error of the system.
int Listen(const CPeerAddress& address, int port, CFileDescriptor& result) {
    CSocketAddress where = AddressOf(address, port);
    CFileDescriptor socket(::socket(where.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!socket.IsOpen()) return errno;
    const int on = 1;
    const auto set = [&](int level, int name) {
        return ::setsockopt(socket.Get(), level, name, &on, sizeof on) == 0;
    };
    if (!address.IsIpv4() && !set(IPPROTO_IPV6, IPV6_V6ONLY)) return errno;
    // Accepted sockets have the listening one's options.
    if (!set(SOL_SOCKET, SO_REUSEADDR) || !set(IPPROTO_TCP, TCP_NODELAY)) return errno;
    if (::bind(socket.Get(), where.Get(), where.bytes) != 0 || ::listen(socket.Get(), kBacklog) != 0)
        return errno;
    result = std::move(socket);
    return 0;
}

bool IsMissingHere(int error) {
    return error == EADDRNOTAVAIL || error == EAFNOSUPPORT;
}

CError ListenError(int error, const std::string& where, int port) {
    const EErrorCode code = error == EADDRINUSE ? EErrorCode::Exists : EErrorCode::Unreadable;
    return {code, error == EADDRINUSE ? "port " + std::to_string(port) + " is taken" : SystemErrorText(error),
            where};
}

// Listens on all addresses with one port. tryAgain: the system chose a port that is taken at another address.
CResult<CListeningSockets> ListenOnce(const std::vector<std::string>& addresses, int port, bool& tryAgain) {
    CListeningSockets result;
    result.port = port;
    int missing = 0;
    for (const std::string& text : addresses) {
        const std::optional<CPeerAddress> address = CPeerAddress::Parse(text);
        if (!address) return CError{EErrorCode::BadArgument, "no numeric address", text};
        CFileDescriptor socket;
        const int error = Listen(*address, result.port, socket);
        tryAgain = error == EADDRINUSE && port == 0;
        if (IsMissingHere(error)) missing = error;
        if (IsMissingHere(error)) continue;
        if (error != 0) return ListenError(error, text, port);
        if (result.port == 0) result.port = PortOf(socket);
        result.sockets.push_back(std::move(socket));
    }
    if (result.sockets.empty()) return ListenError(missing, addresses.empty() ? "" : addresses.front(), port);
    return result;
}

bool IsShortage(int error) {
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

}  // namespace

CResult<CListeningSockets> ListenOn(const std::vector<std::string>& addresses, int port) {
    for (int i = 1;; ++i) {
        bool tryAgain = false;
        CResult<CListeningSockets> result = ListenOnce(addresses, port, tryAgain);
        if (result || !tryAgain || i == kPortTries) return result;
    }
}

CHttpListener::CHttpListener(CFileDescriptor socket, std::vector<std::shared_ptr<CHttpLoop>> loops)
    : m_loops(std::move(loops)), m_acceptor(m_loops.front()->Context()), m_pause(m_loops.front()->Context()) {
    m_acceptor.assign(tcp::v4(), socket.Get());  // the family does not matter for what is done with it
    (void)socket.Release();
}

void CHttpListener::Await() {
    if (!m_acceptor.is_open()) return;
    m_acceptor.async_wait(tcp::acceptor::wait_read,
                          [self = shared_from_this()](const boost::system::error_code& error) {
                              if (!error) self->OnWoken();
                          });
}

void CHttpListener::OnWoken() {
    try {
        AcceptSome();
    } catch (const std::exception&) {
        Pause();  // no memory
    }
}

void CHttpListener::AcceptSome() {
    for (int i = 0; i < kAcceptsInARow && m_acceptor.is_open(); ++i) {
        CSocketAddress address;
        address.bytes = sizeof address.storage;
        CFileDescriptor socket(::accept4(m_acceptor.native_handle(), address.Get(), &address.bytes,
                                         SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (!socket.IsOpen()) {
            if (IsShortage(errno)) return Pause();
            if (errno == EAGAIN) break;
            continue;  // that client has gone already
        }
        Take(std::move(socket), CPeerAddress::Of(*address.Get()), address.storage.ss_family == AF_INET6);
    }
    Await();
}

// Clients wait in the system's queue meanwhile.
void CHttpListener::Pause() {
    m_loops.front()->Shared().meters.acceptPauses.fetch_add(1);
    m_pause.expires_after(kPauseTime);
    m_pause.async_wait([self = shared_from_this()](const boost::system::error_code& error) {
        if (!error) self->OnWoken();
    });
}

void CHttpListener::Take(CFileDescriptor socket, const CPeerAddress& peer, bool isIpv6) {
    CHttpShared& shared = m_loops.front()->Shared();
    shared.meters.connections.fetch_add(1);
    const bool isFull = shared.meters.openConnections - shared.refusedOpen >= shared.options.connections;
    const EAdmission admission = isFull                           ? EAdmission::Refused
                                 : shared.proxies.IsTrusted(peer) ? EAdmission::Free
                                 : shared.peers.Connect(peer)     ? EAdmission::Counted
                                                                  : EAdmission::Refused;
    const bool isRefused = admission == EAdmission::Refused;
    if (isRefused) (isFull ? shared.meters.refusedConnections : shared.meters.refusedPeers).fetch_add(1);
    // There is a bound for those that are told why, too.
    if (isRefused && shared.refusedOpen >= kRefusedOpen) return;
    const std::shared_ptr<CHttpLoop>& loop = m_loops[m_next++ % m_loops.size()];
    tcp::socket accepted(loop->Context());
    boost::system::error_code error;
    accepted.assign(isIpv6 ? tcp::v6() : tcp::v4(), socket.Get(), error);
    if (error) {
        if (admission == EAdmission::Counted) shared.peers.Disconnect(peer);
        return;
    }
    (void)socket.Release();
    auto connection = std::make_shared<CHttpConnection>(loop, std::move(accepted), peer, admission);
    // The loops run on until the listeners are closed.
    loop->Post([loop, connection, isRefused, isFull] {
        loop->Add(connection);
        if (!isRefused) return connection->Begin();
        connection->Refuse(isFull ? 503 : 429,
                           isFull ? "too many connections" : "too many connections of one client");
    });
}

void CHttpListener::Close() {
    boost::system::error_code ignored;
    m_acceptor.close(ignored);
    m_pause.cancel();
}
