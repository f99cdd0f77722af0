// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

#include "model/levels/CMeshLevels.h"

/** Makes levels of meshes on a thread of low priority, one mesh after the other. It works on copies, so that a scene
 * can change and close meanwhile without waiting. The thread starts with the first mesh. All functions are for one
 * thread, that of the caller. */
class CLevelMaker {
  public:
    struct CMade {
        std::size_t mesh;     ///< as it was given
        std::uint64_t stamp;  ///< of the mesh that was copied
        CMeshLevels levels;
    };

    CLevelMaker() = default;
    CLevelMaker(const CLevelMaker&) = delete;
    CLevelMaker& operator=(const CLevelMaker&) = delete;
    /** Stops the work, within some milliseconds of processor time. */
    ~CLevelMaker();

    /** Copies the mesh and puts it at the end of the queue; number is handed back with the levels. Where there is no memory or
     * no further thread, the mesh gets no levels, and Take hands that out. */
    void Give(std::size_t number, const CPreparedMesh& mesh);
    /** What was made first and not yet taken. */
    [[nodiscard]] std::optional<CMade> Take();
    /** Meshes that were given and whose levels were not yet taken. */
    [[nodiscard]] std::size_t Pending() const;
    /** Triangles of the meshes that wait for their turn. */
    [[nodiscard]] std::size_t PendingTriangles() const;
    /** While paused, no further mesh is begun. */
    void SetPaused(bool paused);
    /** Drops all that was given and made. Does not wait. */
    void Forget();

  private:
    struct CTask {
        std::size_t number;
        CPreparedMesh mesh;
        std::uint64_t round;
    };
    void Run();
    [[nodiscard]] std::optional<CTask> NextTask();

    mutable std::mutex m_mutex;  ///< guards what follows up to m_stopWork
    std::condition_variable m_wake;
    std::deque<CTask> m_tasks;
    std::deque<CMade> m_made;
    std::size_t m_pending = 0;
    std::uint64_t m_round = 0;  ///< grows with each Forget
    bool m_paused = false;
    bool m_ended = false;
    std::atomic<bool> m_stopWork{false};  ///< of the mesh at work
    std::thread m_thread;
};
