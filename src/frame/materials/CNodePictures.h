// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "base/jobs/CJob.h"
#include "picture/CImage.h"

struct CPreparedScene;

/** Makes pictures of nodes on a thread of its own, which ends when none is wanted. The owner fetches them when it has
 * time. The destructor cancels what is being made. */
class CNodePictures {
  public:
    /** scene must outlive it, and nobody may change it meanwhile. sidePx: width and height of the pictures. */
    CNodePictures(const CPreparedScene& scene, int sidePx);
    CNodePictures(const CNodePictures&) = delete;
    CNodePictures& operator=(const CNodePictures&) = delete;

    using CPicture = std::pair<std::size_t, CImage>;  ///< of a node by its index

    /** Only these are wanted now, in this order; what was wanted before and is not made yet is dropped. */
    void Want(std::vector<std::size_t> nodes);
    /** Moves out what has been made since the last call. */
    [[nodiscard]] std::vector<CPicture> Take();

  private:
    void Work(CJobProgress& progress);

    const CPreparedScene& m_scene;
    int m_sidePx;
    std::mutex m_mutex;
    std::vector<std::size_t> m_wanted;  ///< the next one last
    std::vector<CPicture> m_done;
    bool m_isWorking = false;
    std::optional<CJob> m_job;  // last: its thread uses the others
};
