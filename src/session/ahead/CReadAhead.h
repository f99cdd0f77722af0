// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/jobs/CJobProgress.h"
#include "session/ahead/CReadyScene.h"

/** Reads and prepares models before anybody asks for them, one after the other on one thread of low priority, which
 * sleeps while there is nothing to read. Files that fail are forgotten: whoever opens them finds out why. All functions
 * but Await are for one thread, and none but the destructor waits for the work. Paths are wide and absolute. */
class CReadAhead {
  public:
    /** Tells which model a file shows; empty for a file that is not to be read ahead. Called on the thread that reads. When
     * cancelled becomes true, it should return soon. */
    using CModelFinder =
        std::function<std::wstring(const std::wstring& path, const std::atomic<bool>& cancelled)>;

    static constexpr std::size_t kMostScenes = 2;
    /** Of one scene: the bytes of its file, prepared vertices and decoded pictures, see CLoadLimits. */
    static constexpr std::uint64_t kMostBytes = 160ULL << 20;

    explicit CReadAhead(CModelFinder modelOf, std::uint64_t mostBytes = kMostBytes);
    CReadAhead(const CReadAhead&) = delete;
    CReadAhead& operator=(const CReadAhead&) = delete;
    /** Cancels the work and waits for its end. */
    ~CReadAhead();

    /** Reads these files, the first kMostScenes of them, in this order. What is ready or being read of them stays;
     * the rest is cancelled and dropped. */
    void Want(std::vector<std::wstring> files);
    /** The scene of a model if it is ready, otherwise null. Everything else is cancelled and dropped. */
    [[nodiscard]] std::shared_ptr<CReadyScene> Take(const std::wstring& model);
    /** True while a model is being read and more than half of it is done: then Await ends before another reading would. */
    [[nodiscard]] bool IsNearlyReady(const std::wstring& model) const;
    /** Waits until the model is no longer being read. Hands its progress on, and is cancelled by it. Any thread may
     * call it. */
    void Await(const std::wstring& model, CJobProgress& progress) const;
    /** True when nothing is being read, or about to be. */
    [[nodiscard]] bool IsIdle() const;

  private:
    struct CScene {
        std::wstring file, model;
        std::shared_ptr<CReadyScene> scene;
    };
    struct CReading {
        std::wstring file, model;  ///< model is empty until it was found
        CJobProgress progress;
    };
    [[nodiscard]] bool IsReading(const std::wstring& model) const;
    void CancelReading();
    void Run();
    void ReadNext(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] std::shared_ptr<CReadyScene> Read(CReading& reading);

    CModelFinder m_modelOf;
    std::uint64_t m_mostBytes;
    mutable std::mutex m_mutex;  ///< guards what follows
    mutable std::condition_variable m_wake;
    std::deque<std::wstring> m_wanted;  ///< files, still to be read
    /** The file at work; null once it was cancelled. The thread holds it, too. */
    std::shared_ptr<CReading> m_reading;
    std::vector<CScene> m_ready;
    std::vector<CScene> m_dropped;  ///< freed on the thread that reads, as freeing takes time
    bool m_ended = false;
    std::thread m_thread;
};
