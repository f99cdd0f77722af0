// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

#include "files/CFileDescriptor.h"

/** What goes wrong with a connection. */
struct CFault {
    enum class EKind {
        None,
        Refuse,   ///< closed before a byte came
        Cut,      ///< closed behind byte `at`
        Reset,    ///< the same, by RST
        Stall,    ///< nothing more comes from byte `at` on
        Corrupt,  ///< byte `at` is another one
        Slow,     ///< 20 ms before each piece of 4 KiB
    };
    EKind kind = EKind::None;
    bool inAnswer = true;  ///< or in what the client sends
    std::size_t at = 0;
};

/** A TCP proxy on 127.0.0.1 that hands on bytes, and spoils them. */
class CFaultyProxy {
  public:
    explicit CFaultyProxy(int serverPort);
    CFaultyProxy(const CFaultyProxy&) = delete;
    CFaultyProxy& operator=(const CFaultyProxy&) = delete;
    ~CFaultyProxy();

    [[nodiscard]] int Port() const { return m_port; }
    /** For the connections that come from now on. Those that stand are cut. */
    void SetFault(const CFault& fault);

  private:
    struct CLine;
    void Accept();
    void CutAll();
    static void Serve(CLine& line);

    int m_serverPort;
    CFileDescriptor m_listener;
    int m_port;
    std::mutex m_mutex;
    CFault m_fault;  ///< guarded, with the next
    std::list<std::unique_ptr<CLine>> m_lines;
    std::atomic<bool> m_ends{false};
    std::thread m_thread;
};
