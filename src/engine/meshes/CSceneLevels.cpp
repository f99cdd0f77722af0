// SPDX-License-Identifier: MIT
#include "engine/meshes/CSceneLevels.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include "engine/meshes/CSceneMeshes.h"
#include "model/levels/make_levels.h"
#include "model/prepare/CPreparedScene.h"

namespace {

using CClock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kLongestStep{5};
/** Triangles that wait for the maker, about: what it can do in a fifth of a second. */
constexpr std::size_t kMostPending = 500'000;

}  // namespace

void CSceneLevels::Forget() {
    m_maker.Forget();
    m_waiting.clear();
    m_isListed = false;
}

bool CSceneLevels::Work(CGlCurrent& gl, const CPreparedScene& scene, CSceneMeshes& meshes) {
    if (!m_isListed) List(scene, meshes);
    const auto begin = CClock::now();
    GiveNext(scene);
    while (std::optional<CLevelMaker::CMade> made = m_maker.Take()) {
        meshes.SetLevels(gl, scene, made->mesh, std::move(made->levels));
        if (CClock::now() - begin > kLongestStep) break;
    }
    GiveNext(scene);
    return m_maker.Pending() > 0;
}

void CSceneLevels::List(const CPreparedScene& scene, const CSceneMeshes& meshes) {
    m_maker.Forget();
    m_waiting.clear();
    m_isListed = true;
    std::vector<bool> used(meshes.Count());
    for (const CPreparedNode& node : scene.nodes) {
        if (node.mesh >= 0 && static_cast<std::size_t>(node.mesh) < used.size())
            used[static_cast<std::size_t>(node.mesh)] = true;
    }
    for (std::uint32_t i = 0; i < used.size(); ++i) {
        const bool large = scene.meshes[i].IndexCount() / 3 >= kLeastTrianglesForLevels;
        if (used[i] && large && !meshes.HasLevelsSet(i)) m_waiting.push_back(i);
    }
    std::stable_sort(m_waiting.begin(), m_waiting.end(), [&](std::uint32_t a, std::uint32_t b) {
        return scene.meshes[a].IndexCount() < scene.meshes[b].IndexCount();
    });
}

/** Keeps the maker busy, also while nobody calls for the time of a slow frame, without copying much more than it needs. */
void CSceneLevels::GiveNext(const CPreparedScene& scene) {
    while (!m_waiting.empty() && (m_maker.Pending() < 2 || m_maker.PendingTriangles() < kMostPending)) {
        m_maker.Give(m_waiting.back(), scene.meshes[m_waiting.back()]);
        m_waiting.pop_back();
    }
}
