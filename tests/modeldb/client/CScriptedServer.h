// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "files/CFileDescriptor.h"

/** A request as it came. */
struct CScriptedRequest {
    std::string method, target, body;
    std::string head;  ///< all lines, as they came

    /** What stands behind "Name: "; empty without it. */
    [[nodiscard]] std::string Header(std::string_view name) const;
};

/** A connection of a server that a test scripts: it may send anything. */
class CScriptedPeer {
  public:
    CScriptedPeer(int socket, const std::atomic<bool>& isEnding) : m_socket(socket), m_isEnding(isEnding) {}

    /** False when the client has gone. */
    bool Send(std::string_view bytes);
    /** A whole answer. */
    bool Answer(int status, std::string_view body, std::string_view headers = {});
    /** Waits so long; false when the client, or the test, ends meanwhile. */
    bool Wait(std::chrono::milliseconds time);
    /** Sends nothing until the client has gone. */
    void Stall() { Wait(std::chrono::minutes(1)); }

  private:
    int m_socket;
    const std::atomic<bool>& m_isEnding;
};

/** A server on this machine whose answers a test scripts. Each connection has a thread, on which the handler is called for
 * each request; false from it closes the connection. */
class CScriptedServer {
  public:
    using CHandler = std::function<bool(const CScriptedRequest&, CScriptedPeer&)>;

    /** wantsBody: reads the bodies of requests, too. */
    explicit CScriptedServer(CHandler handler, bool wantsBody = true);
    CScriptedServer(const CScriptedServer&) = delete;
    CScriptedServer& operator=(const CScriptedServer&) = delete;
    ~CScriptedServer();

    [[nodiscard]] int Port() const { return m_port; }
    [[nodiscard]] std::string Address() const { return "http://127.0.0.1:" + std::to_string(m_port); }
    [[nodiscard]] int Connections() const { return m_connections; }
    /** What came so far. */
    [[nodiscard]] std::vector<CScriptedRequest> Requests() const;

  private:
    void Accept();
    void Serve(int socket);

    CHandler m_handler;
    bool m_wantsBody;
    CFileDescriptor m_listener;
    int m_port;
    std::atomic<bool> m_isEnding = false;
    std::atomic<int> m_connections = 0;
    mutable std::mutex m_mutex;
    std::vector<CScriptedRequest> m_requests;  ///< guarded
    std::list<std::thread> m_threads;          ///< the accepting thread's
    std::thread m_accepting;
};
