// SPDX-License-Identifier: MIT
#include "modeldb/server/http/CHttpServer.h"

#include <algorithm>
#include <csignal>
#include <exception>
#include <future>
#include <mutex>
#include <vector>

#include "modeldb/server/http/CHttpListener.h"
#include "modeldb/server/http/CHttpLoop.h"

struct CHttpServer::CState {
    std::shared_ptr<CHttpShared> shared;  // shared with loops, connections and replies that are held
    std::vector<std::shared_ptr<CHttpLoop>>
        loops;  // shared with their connections, so with replies that are held
    std::vector<std::shared_ptr<CHttpListener>> listeners;  // shared with what they wait for
    int port = 0;
    std::once_flag stopped;

    void CloseListeners();
    void EndLoops();
};

namespace {

constexpr std::chrono::hours kMostGrace{24};

CStatus CheckOptions(const CHttpServerOptions& options) {
    const auto bad = [](const char* which) {
        return CError{EErrorCode::BadArgument, "a value out of range", which};
    };
    if (options.threads < 1 || options.threads > 64) return bad("threads");
    if (options.port < 0 || options.port > 65535) return bad("port");
    if (options.headBytes < 1024 || options.headBytes > 65536) return bad("headBytes");
    if (options.connections < 1) return bad("connections");
    if (options.waitingRequests < 1) return bad("waitingRequests");
    if (options.bodyBytesPerSecond < 1 || options.answerBytesPerSecond < 1) return bad("bytesPerSecond");
    for (const CHttpServerOptions::Seconds time :
         {options.headTime, options.idleTime, options.stallTime, options.bodyGrace, options.answerGrace,
          options.siteTime}) {
        if (!(time.count() > 0 && time.count() <= 1e6)) return bad("time");
    }
    return CDone{};
}

}  // namespace

CResult<std::unique_ptr<CHttpServer>> CHttpServer::Start(COptions options, CHttpSite& site) {
    if (CStatus checked = CheckOptions(options); !checked) return checked.Error();
    ::signal(SIGPIPE, SIG_IGN);  // sendfile cannot be told otherwise
    try {
        auto state = std::make_unique<CState>();
        state->shared = std::make_shared<CHttpShared>(std::move(options), site);
        const COptions& kept = state->shared->options;
        for (const std::string& proxy : kept.trustedProxies) {
            if (!state->shared->proxies.Trust(proxy)) {
                return CError{EErrorCode::BadArgument, "no numeric address", proxy};
            }
        }
        CResult<CListeningSockets> listening = ListenOn(kept.addresses, kept.port);
        if (!listening) return listening.Error();
        state->port = listening.Value().port;
        for (int i = 0; i < kept.threads; ++i)
            state->loops.push_back(std::make_shared<CHttpLoop>(state->shared));
        for (CFileDescriptor& socket : listening.Value().sockets) {
            state->listeners.push_back(std::make_shared<CHttpListener>(std::move(socket), state->loops));
        }
        std::unique_ptr<CHttpServer> server(new CHttpServer(std::move(state)));
        for (const auto& loop : server->m_state->loops) loop->Start();
        for (const auto& listener : server->m_state->listeners) {
            server->m_state->loops.front()->Post([listener] { listener->Await(); });
        }
        return server;
    } catch (const std::exception& error) {
        return CError{EErrorCode::Unreadable, error.what(), {}};
    }
}

CHttpServer::CHttpServer(std::unique_ptr<CState> state) : m_state(std::move(state)) {}

CHttpServer::~CHttpServer() {
    Stop({});
}

int CHttpServer::Port() const {
    return m_state->port;
}

// When this has returned no connection is handed to a loop any more.
void CHttpServer::CState::CloseListeners() {
    auto closed = std::make_shared<std::promise<void>>();
    const bool isPosted = loops.front()->Post([this, closed] {
        for (const auto& listener : listeners) listener->Close();
        closed->set_value();
    });
    if (isPosted) closed->get_future().wait();
}

void CHttpServer::CState::EndLoops() {
    for (const auto& loop : loops) loop->End();
    listeners.clear();
}

void CHttpServer::Stop(std::chrono::duration<double> grace) {
    std::call_once(m_state->stopped, [&] {
        m_state->shared->stopping = true;
        m_state->CloseListeners();
        for (const auto& loop : m_state->loops) {
            loop->Post([loop] { loop->CloseIdle(); });
        }
        m_state->shared->WaitForNone(std::min<std::chrono::duration<double>>(grace, kMostGrace));
        m_state->EndLoops();
    });
}

CHttpCounters CHttpServer::Counters() const {
    CHttpCounters counters = m_state->shared->meters.Read();
    counters.spoolBytes = m_state->shared->spool.ReservedBytes();
    return counters;
}
