// SPDX-License-Identifier: MIT
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "files/CFileDescriptor.h"

/** Sockets on this machine. */
namespace loopback {

inline CFileDescriptor Socket() {
    return CFileDescriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}
inline sockaddr_in AddressOf(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}
inline bool Connect(const CFileDescriptor& socket, int port) {
    const sockaddr_in address = AddressOf(port);
    return ::connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
}
/** Has a socket listen on a port that the system chooses. */
inline int Listen(const CFileDescriptor& socket) {
    sockaddr_in address = AddressOf(0);
    socklen_t size = sizeof(address);
    auto* general = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket.Get(), general, size) != 0 || ::listen(socket.Get(), 64) != 0 ||
        ::getsockname(socket.Get(), general, &size) != 0)
        throw std::runtime_error("no port to listen on");
    return ntohs(address.sin_port);
}
/** False when the other side has closed. */
inline bool SendAll(int socket, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

}  // namespace loopback
