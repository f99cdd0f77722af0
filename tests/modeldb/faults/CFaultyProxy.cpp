// SPDX-License-Identifier: MIT
#include "CFaultyProxy.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "loopback.h"

namespace {

/** Closed, it ends with RST. */
void EndHard(int socket) {
    const linger now{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
}

}  // namespace

struct CFaultyProxy::CLine {
    CFault fault;
    CFileDescriptor client, server;
    std::array<std::size_t, 2> passed{};  ///< bytes of the client, of the server
    std::thread thread;
    std::atomic<bool> isStalled{false};

    /** Hands on what one side sent; false where the connection ends. */
    bool Pass(bool answer) {
        std::array<char, 4096> room;
        const int from = answer ? server.Get() : client.Get(), to = answer ? client.Get() : server.Get();
        const ssize_t got = ::recv(from, room.data(), room.size(), 0);
        if (got <= 0) return false;
        std::string piece(room.data(), static_cast<std::size_t>(got));
        const std::size_t first = passed[answer ? 1 : 0];
        passed[answer ? 1 : 0] += piece.size();
        const bool isHere = answer == fault.inAnswer && fault.at < first + piece.size();
        if (fault.kind == CFault::EKind::Slow) std::this_thread::sleep_for(std::chrono::milliseconds(20));
        if (isHere) Spoil(piece, std::max(fault.at, first) - first);
        return loopback::SendAll(to, piece) && !(isHere && Ends());
    }
    [[nodiscard]] bool Ends() const {
        return fault.kind == CFault::EKind::Cut || fault.kind == CFault::EKind::Reset;
    }
    /** Makes of a piece what arrives when something happens to it at a place. */
    void Spoil(std::string& piece, std::size_t at) {
        if (fault.kind == CFault::EKind::Corrupt && fault.at != SIZE_MAX) {
            piece[at] = static_cast<char>(piece[at] ^ 0x15);
            fault.at = SIZE_MAX;
        }
        isStalled = isStalled || fault.kind == CFault::EKind::Stall;
        if (isStalled || Ends()) piece.resize(at);
    }
};

CFaultyProxy::CFaultyProxy(int serverPort)
    : m_serverPort(serverPort),
      m_listener(loopback::Socket()),
      m_port(loopback::Listen(m_listener)),
      m_thread([this] { Accept(); }) {}

CFaultyProxy::~CFaultyProxy() {
    m_ends = true;
    ::shutdown(m_listener.Get(), SHUT_RDWR);
    m_thread.join();
    CutAll();
}

void CFaultyProxy::SetFault(const CFault& fault) {
    CutAll();
    const std::lock_guard lock(m_mutex);
    m_fault = fault;
}

void CFaultyProxy::CutAll() {
    std::list<std::unique_ptr<CLine>> lines;
    {
        const std::lock_guard lock(m_mutex);
        lines.swap(m_lines);
    }
    for (const auto& line : lines) {
        ::shutdown(line->client.Get(), SHUT_RDWR);
        ::shutdown(line->server.Get(), SHUT_RDWR);
        line->thread.join();
    }
}

void CFaultyProxy::Accept() {
    while (!m_ends) {
        auto line = std::make_unique<CLine>();
        line->client = CFileDescriptor(::accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (!line->client.IsOpen()) continue;
        line->server = loopback::Socket();
        const std::lock_guard lock(m_mutex);
        line->fault = m_fault;
        if (m_fault.kind == CFault::EKind::Refuse || !loopback::Connect(line->server, m_serverPort)) continue;
        m_lines.push_back(std::move(line));
        m_lines.back()->thread = std::thread([&running = *m_lines.back()] { Serve(running); });
    }
}

void CFaultyProxy::Serve(CLine& line) {
    while (true) {
        std::array<pollfd, 2> sides{{{line.client.Get(), POLLIN, 0}, {line.server.Get(), POLLIN, 0}}};
        // A side that stalled is still looked at, so that its end is seen.
        if (::poll(sides.data(), sides.size(), -1) < 0) break;
        if (sides[0].revents != 0 && !line.Pass(false)) break;
        if (sides[1].revents != 0 && !line.Pass(true)) break;
    }
    if (line.fault.kind == CFault::EKind::Reset) EndHard(line.client.Get());
    ::shutdown(line.client.Get(), SHUT_RDWR);
    ::shutdown(line.server.Get(), SHUT_RDWR);
}
