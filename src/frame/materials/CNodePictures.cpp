// SPDX-License-Identifier: MIT
#include "frame/materials/CNodePictures.h"

#include <algorithm>

#include "frame/materials/node_picture.h"

CNodePictures::CNodePictures(const CPreparedScene& scene, int sidePx) : m_scene(scene), m_sidePx(sidePx) {}

void CNodePictures::Want(std::vector<std::size_t> nodes) {
    std::reverse(nodes.begin(), nodes.end());
    {
        const std::lock_guard lock(m_mutex);
        m_wanted = std::move(nodes);
        if (m_wanted.empty() || m_isWorking) return;
        m_isWorking = true;
    }
    m_job.emplace([this](CJobProgress& progress) { Work(progress); });
}

std::vector<CNodePictures::CPicture> CNodePictures::Take() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_done, {});
}

void CNodePictures::Work(CJobProgress& progress) {
    while (true) {
        std::size_t node = 0;
        {
            const std::lock_guard lock(m_mutex);
            m_isWorking = !m_wanted.empty() && !progress.IsCancelled();
            if (!m_isWorking) return;
            node = m_wanted.back();
            m_wanted.pop_back();
        }
        CImage picture = DrawNodePicture(m_scene, node, m_sidePx, progress);
        const std::lock_guard lock(m_mutex);
        m_done.emplace_back(node, std::move(picture));
    }
}
