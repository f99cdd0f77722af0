// SPDX-License-Identifier: MIT
#pragma once

#include <poll.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>

#include "loopback.h"

/** A client that sends bytes as they are. It waits ten seconds at most, and shows what came until then. */
class CRawClient {
  public:
    explicit CRawClient(int port, int receiveBuffer = 0) : m_socket(loopback::Socket()) {
        if (receiveBuffer > 0) {
            ::setsockopt(m_socket.Get(), SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
        }
        m_connected = loopback::Connect(m_socket, port);
    }

    [[nodiscard]] bool IsConnected() const { return m_connected; }
    /** False when the server has closed. */
    bool Send(std::string_view bytes) { return loopback::SendAll(m_socket.Get(), bytes); }
    /** Everything until the server closes; "<reset>" at the end for a connection that was cut, "<waiting>" for none. */
    std::string ReadAll(std::chrono::milliseconds most = std::chrono::seconds(10)) {
        std::string all = std::exchange(m_read, {});
        for (;;) {
            const int count = ReadSome(most);
            if (count <= 0) return all + m_read + (count < 0 ? (count == -2 ? "<waiting>" : "<reset>") : "");
            all += std::exchange(m_read, {});
        }
    }
    /** One answer, head and body; hasBody: false for those to HEAD. */
    std::string ReadAnswer(bool hasBody = true) {
        std::size_t end = 0;
        while ((end = m_read.find("\r\n\r\n")) == m_read.npos) {
            if (ReadSome(std::chrono::seconds(10)) <= 0) return std::exchange(m_read, {}) + "<end>";
        }
        const std::size_t field = m_read.find("Content-Length: ");
        const std::size_t bytes =
            hasBody && field < end ? std::strtoull(m_read.c_str() + field + 16, nullptr, 10) : 0;
        while (m_read.size() < end + 4 + bytes) {
            if (ReadSome(std::chrono::seconds(10)) <= 0) return std::exchange(m_read, {}) + "<end>";
        }
        const std::string answer = m_read.substr(0, end + 4 + bytes);
        m_read.erase(0, answer.size());
        return answer;
    }
    std::string Ask(std::string_view request) {
        Send(request);
        return ReadAnswer();
    }

  private:
    // The bytes read; 0 at the end, -1 for an error, -2 when nothing came.
    int ReadSome(std::chrono::milliseconds most) {
        pollfd wanted{m_socket.Get(), POLLIN, 0};
        if (::poll(&wanted, 1, static_cast<int>(most.count())) == 0) return -2;
        std::array<char, 65536> buffer{};
        const ssize_t count = ::recv(m_socket.Get(), buffer.data(), buffer.size(), 0);
        if (count > 0) m_read.append(buffer.data(), static_cast<std::size_t>(count));
        return static_cast<int>(count);
    }

    CFileDescriptor m_socket;
    bool m_connected = false;
    std::string m_read;
};

/** The status of an answer; 0 for none. */
inline int StatusOf(std::string_view answer) {
    return answer.starts_with("HTTP/1.1 ") ? std::atoi(std::string(answer.substr(9, 3)).c_str()) : 0;
}
inline std::string BodyOf(const std::string& answer) {
    const std::size_t end = answer.find("\r\n\r\n");
    return end == answer.npos ? "" : answer.substr(end + 4);
}
inline std::string Get(std::string_view target) {
    return "GET " + std::string(target) + " HTTP/1.1\r\nHost: a\r\n\r\n";
}
inline std::string Post(std::string_view target, std::string_view body) {
    return "POST " + std::string(target) +
           " HTTP/1.1\r\nHost: a\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
           std::string(body);
}
