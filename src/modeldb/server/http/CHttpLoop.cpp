// SPDX-License-Identifier: MIT
#include "modeldb/server/http/CHttpLoop.h"

#include <boost/asio/post.hpp>

#include "modeldb/server/http/CHttpConnection.h"
#include "modeldb/server/http/http_text.h"

namespace {
constexpr std::size_t kScratchBytes = 256 << 10;
thread_local const CHttpLoop* t_loop = nullptr;
}  // namespace

CHttpLoop::CHttpLoop(std::shared_ptr<CHttpShared> shared)
    : m_shared(std::move(shared)), m_scratch(kScratchBytes) {}

void CHttpLoop::Start() {
    m_thread = std::thread([this] { Run(); });
}

bool CHttpLoop::IsThisThread() const {
    return t_loop == this;
}

void CHttpLoop::Run() {
    t_loop = this;
    for (;;) {
        try {
            m_context.run();
            return;
        } catch (...) {
            // A connection ends itself when something is thrown; what comes here was thrown between them.
            m_shared->meters.faults.fetch_add(1);
        }
    }
}

bool CHttpLoop::Post(std::function<void()> work) {
    const std::lock_guard lock(m_postLock);
    if (!m_ended) boost::asio::post(m_context, std::move(work));
    return !m_ended;
}

void CHttpLoop::End() {
    if (!m_thread.joinable()) return;
    Post([this] {
        CloseAll();
        m_timer.cancel();
        m_work.reset();
    });
    {
        const std::lock_guard lock(m_postLock);
        m_ended = true;
    }
    m_thread.join();
}

void CHttpLoop::Add(std::shared_ptr<CHttpConnection> connection) {
    connection->SetPlace(m_connections.size());
    m_connections.push_back(std::move(connection));
    if (!m_ticking) AwaitTick();
}

void CHttpLoop::Remove(const CHttpConnection& connection) {
    const std::size_t place = connection.Place();
    if (place >= m_connections.size() || m_connections[place].get() != &connection) return;
    std::swap(m_connections[place], m_connections.back());
    m_connections[place]->SetPlace(place);
    m_connections.pop_back();
}

void CHttpLoop::AwaitTick() {
    m_ticking = true;
    m_timer.expires_after(kTick);
    m_timer.async_wait([this](const boost::system::error_code& error) {
        m_ticking = false;
        if (!error) Tick();
    });
}

void CHttpLoop::Tick() {
    if (!m_connections.empty()) AwaitTick();  // first, so that nothing that is thrown below ends the ticking
    const auto now = std::chrono::steady_clock::now();
    // From the last, as whoever closes is replaced by the last.
    for (std::size_t i = m_connections.size(); i-- > 0;) {
        const std::shared_ptr<CHttpConnection> connection = m_connections[i];
        connection->CheckTime(now);
    }
}

void CHttpLoop::CloseIdle() {
    for (std::size_t i = m_connections.size(); i-- > 0;) {
        const std::shared_ptr<CHttpConnection> connection = m_connections[i];
        connection->CloseIfIdle();
    }
}

void CHttpLoop::CloseAll() {
    while (!m_connections.empty()) {
        const std::shared_ptr<CHttpConnection> connection = m_connections.back();
        connection->Close();
    }
}

std::string& CHttpLoop::EmptyText() {
    m_text.clear();
    return m_text;
}

std::string_view CHttpLoop::Date() {
    const std::int64_t seconds =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    if (seconds != m_dateSeconds) {
        m_dateSeconds = seconds;
        m_date = HttpDate(seconds);
    }
    return m_date;
}
