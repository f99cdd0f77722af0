// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <memory>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "modeldb/server/http/CHttpLoop.h"

/** The sockets that a server listens on, all with one port. */
struct CListeningSockets {
    std::vector<CFileDescriptor> sockets;
    int port = 0;
};
/** As CHttpServer::Start tells. */
[[nodiscard]] CResult<CListeningSockets> ListenOn(const std::vector<std::string>& addresses, int port);

/** Accepts connections of one listening socket on the first loop and hands them to the loops in turn. */
class CHttpListener final : public std::enable_shared_from_this<CHttpListener> {
  public:
    CHttpListener(CFileDescriptor socket, std::vector<std::shared_ptr<CHttpLoop>> loops);

    // On the first loop's thread.
    void Await();
    void Close();

  private:
    void OnWoken();
    void AcceptSome();
    void Pause();
    void Take(CFileDescriptor socket, const CPeerAddress& peer, bool isIpv6);

    std::vector<std::shared_ptr<CHttpLoop>> m_loops;  // shared with the server
    boost::asio::ip::tcp::acceptor m_acceptor;
    boost::asio::steady_timer m_pause;
    std::size_t m_next = 0;
};
