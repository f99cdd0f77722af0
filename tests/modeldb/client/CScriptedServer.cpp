// SPDX-License-Identifier: MIT
#include "CScriptedServer.h"

#include <poll.h>

#include <array>

#include "loopback.h"

using namespace std::chrono_literals;

std::string CScriptedRequest::Header(std::string_view name) const {
    const std::size_t line = head.find("\r\n" + std::string(name) + ": ");
    if (line == std::string::npos) return {};
    const std::size_t value = line + name.size() + 4;
    return head.substr(value, head.find("\r\n", value) - value);
}

bool CScriptedPeer::Send(std::string_view bytes) {
    return loopback::SendAll(m_socket, bytes);
}

bool CScriptedPeer::Answer(int status, std::string_view body, std::string_view headers) {
    return Send("HTTP/1.1 " + std::to_string(status) + " Word\r\nContent-Length: " +
                std::to_string(body.size()) + "\r\n" + std::string(headers) + "\r\n" + std::string(body));
}

bool CScriptedPeer::Wait(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end && !m_isEnding) {
        pollfd gone{m_socket, POLLRDHUP, 0};
        if (::poll(&gone, 1, 10) > 0) return false;
    }
    return !m_isEnding;
}

CScriptedServer::CScriptedServer(CHandler handler, bool wantsBody)
    : m_handler(std::move(handler)),
      m_wantsBody(wantsBody),
      m_listener(loopback::Socket()),
      m_port(loopback::Listen(m_listener)),
      m_accepting([this] { Accept(); }) {}

CScriptedServer::~CScriptedServer() {
    m_isEnding = true;
    m_accepting.join();
    for (std::thread& thread : m_threads) thread.join();
}

std::vector<CScriptedRequest> CScriptedServer::Requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void CScriptedServer::Accept() {
    while (!m_isEnding) {
        pollfd comes{m_listener.Get(), POLLIN, 0};
        if (::poll(&comes, 1, 10) <= 0) continue;
        const int socket = ::accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) continue;
        ++m_connections;
        m_threads.emplace_back([this, socket] { Serve(socket); });
    }
}

void CScriptedServer::Serve(int socket) {
    const CFileDescriptor owned(socket);
    CScriptedPeer peer(socket, m_isEnding);
    std::string got;
    const auto readMore = [&] {
        pollfd comes{socket, POLLIN, 0};
        while (!m_isEnding && ::poll(&comes, 1, 10) == 0) {
        }
        std::array<char, 65536> room{};
        const ssize_t count = m_isEnding ? 0 : ::recv(socket, room.data(), room.size(), 0);
        if (count > 0) got.append(room.data(), static_cast<std::size_t>(count));
        return count > 0;
    };
    for (bool goesOn = true; goesOn;) {
        std::size_t end = 0;
        while ((end = got.find("\r\n\r\n")) == std::string::npos)
            if (!readMore()) return;
        CScriptedRequest request;
        request.head = got.substr(0, end + 2);
        got.erase(0, end + 4);
        const std::size_t space = request.head.find(' ');
        request.method = request.head.substr(0, space);
        request.target = request.head.substr(space + 1, request.head.find(' ', space + 1) - space - 1);
        const std::string length = request.Header("Content-Length");
        const std::size_t bytes = length.empty() || !m_wantsBody ? 0 : std::stoul(length);
        if (bytes > 0 && !request.Header("Expect").empty()) peer.Send("HTTP/1.1 100 Continue\r\n\r\n");
        while (got.size() < bytes)
            if (!readMore()) return;
        request.body = got.substr(0, bytes);
        got.erase(0, bytes);
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(request);
        }
        goesOn = m_handler(request, peer);
    }
}
