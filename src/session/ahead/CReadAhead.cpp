// SPDX-License-Identifier: MIT
#include "session/ahead/CReadAhead.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <system_error>
#include <utility>

#include "base/jobs/thread_priority.h"

CReadAhead::CReadAhead(CModelFinder modelOf, std::uint64_t mostBytes)
    : m_modelOf(std::move(modelOf)), m_mostBytes(mostBytes) {}

CReadAhead::~CReadAhead() {
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
        m_wanted.clear();
        CancelReading();
    }
    m_wake.notify_all();
    if (m_thread.joinable()) m_thread.join();
}

void CReadAhead::CancelReading() {
    if (const auto reading = std::exchange(m_reading, nullptr)) reading->progress.Cancel();
}

void CReadAhead::Want(std::vector<std::wstring> files) {
    if (files.size() > kMostScenes) files.resize(kMostScenes);
    {
        const std::lock_guard lock(m_mutex);
        const auto isWanted = [&](const CScene& scene) {
            return std::ranges::find(files, scene.file) != files.end();
        };
        const auto unwanted = std::stable_partition(m_ready.begin(), m_ready.end(), isWanted);
        std::move(unwanted, m_ready.end(), std::back_inserter(m_dropped));
        m_ready.erase(unwanted, m_ready.end());
        for (const CScene& scene : m_ready) std::erase(files, scene.file);
        if (m_reading && std::erase(files, m_reading->file) == 0) CancelReading();
        m_wanted.assign(files.begin(), files.end());
        try {
            if (!m_wanted.empty() && !m_thread.joinable()) m_thread = std::thread([this] { Run(); });
        } catch (const std::system_error&) {
            m_wanted.clear();  // the system has no further thread
        }
    }
    m_wake.notify_all();
}

std::shared_ptr<CReadyScene> CReadAhead::Take(const std::wstring& model) {
    std::shared_ptr<CReadyScene> taken;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::ranges::find(m_ready, model, &CScene::model);
        if (found != m_ready.end()) {
            taken = std::move(found->scene);
            m_ready.erase(found);
        }
    }
    Want({});
    return taken;
}

bool CReadAhead::IsReading(const std::wstring& model) const {
    return m_reading && !model.empty() && m_reading->model == model;
}

bool CReadAhead::IsNearlyReady(const std::wstring& model) const {
    const std::lock_guard lock(m_mutex);
    return IsReading(model) && m_reading->progress.Share() > 0.5;
}

void CReadAhead::Await(const std::wstring& model, CJobProgress& progress) const {
    constexpr std::chrono::milliseconds kBetweenLooks(10);
    std::unique_lock lock(m_mutex);
    while (IsReading(model) && !progress.IsCancelled()) {
        progress.SetPhase(m_reading->progress.Phase());
        progress.SetShare(m_reading->progress.Share());
        m_wake.wait_for(lock, kBetweenLooks);
    }
}

bool CReadAhead::IsIdle() const {
    const std::lock_guard lock(m_mutex);
    return m_wanted.empty() && !m_reading;
}

// --- the thread that reads -------------------------------------------------------------------------------

void CReadAhead::Run() {
    LowerPriorityOfThisThread();
    std::unique_lock lock(m_mutex);
    while (!m_ended) {
        if (!m_dropped.empty()) {
            std::vector<CScene> dropped = std::exchange(m_dropped, {});
            lock.unlock();
            dropped.clear();
            lock.lock();
        } else if (!m_wanted.empty()) {
            ReadNext(lock);
        } else {
            m_wake.wait(lock);
        }
    }
}

void CReadAhead::ReadNext(std::unique_lock<std::mutex>& lock) {
    const auto reading = std::make_shared<CReading>();
    reading->file = std::move(m_wanted.front());
    m_wanted.pop_front();
    m_reading = reading;
    lock.unlock();
    std::shared_ptr<CReadyScene> scene = Read(*reading);
    lock.lock();
    const bool isWanted = m_reading == reading;
    if (isWanted) m_reading.reset();
    if (scene) (isWanted ? m_ready : m_dropped).push_back({reading->file, reading->model, std::move(scene)});
    m_wake.notify_all();
}

/** Null when it fails or is cancelled. */
std::shared_ptr<CReadyScene> CReadAhead::Read(CReading& reading) {
    try {
        std::wstring model = m_modelOf(reading.file, reading.progress.CancelFlag());
        if (model.empty() || reading.progress.IsCancelled()) return nullptr;
        {
            const std::lock_guard lock(m_mutex);
            reading.model = model;
        }
        CResult<CReadyScene> ready =
            LoadReadyScene(model, reading.progress, {.threads = 1, .bytes = m_mostBytes});
        return ready ? std::make_shared<CReadyScene>(std::move(ready).Value()) : nullptr;
    } catch (const std::exception&) {
        return nullptr;  // no memory for it
    }
}
