// SPDX-License-Identifier: MIT
#include "programs/orbivue_modeldb/CLineLog.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <nlohmann/json.hpp>

namespace {

constexpr std::size_t kMostWaiting = 4 << 20;
constexpr std::chrono::seconds kSameEvent{10};
constexpr std::chrono::milliseconds kPause{100};  ///< in which lines gather

void WriteTo(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;  // nobody reads the log
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::string Now() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    std::array<char, 32> text{};
    (void)::gmtime_r(&now, &parts);  // a time of now can be told
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

}  // namespace

CLineLog::CLineLog(int file) : m_file(file), m_thread([this] { WriteAll(); }) {}

CLineLog::~CLineLog() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_news.notify_one();
    m_thread.join();
}

void CLineLog::Add(std::string_view line) {
    const std::lock_guard lock(m_mutex);
    if (m_waiting.size() + line.size() > kMostWaiting) {
        ++m_dropped;
        return;
    }
    if (m_waiting.empty()) m_news.notify_one();
    m_waiting.append(line).append("\n");
}

void CLineLog::AddEvent(std::string_view event) {
    {
        const std::lock_guard lock(m_mutex);
        const auto now = std::chrono::steady_clock::now();
        if (event == m_lastEvent && now - m_lastEventTime < kSameEvent) return;
        m_lastEvent = event;
        m_lastEventTime = now;
    }
    const nlohmann::ordered_json line{{"time", Now()}, {"event", event}};
    Add(line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

void CLineLog::WriteAll() {
    for (std::unique_lock lock(m_mutex); !m_isEnding || !m_waiting.empty();) {
        m_news.wait(lock, [this] { return m_isEnding || !m_waiting.empty(); });
        if (!m_isEnding) (void)m_news.wait_for(lock, kPause, [this] { return m_isEnding; });
        std::string text;
        text.swap(m_waiting);
        if (m_dropped > 0) text += "{\"event\":\"" + std::to_string(m_dropped) + " lines were dropped\"}\n";
        m_dropped = 0;
        lock.unlock();
        WriteTo(m_file, text);
        lock.lock();
    }
}
