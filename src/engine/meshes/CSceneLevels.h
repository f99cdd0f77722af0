// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "model/levels/CLevelMaker.h"

class CGlCurrent;
class CSceneMeshes;
struct CPreparedScene;

/** Has levels made of the meshes of a scene, the largest first, and hands them to its meshes. */
class CSceneLevels {
  public:
    /** One step of some milliseconds: takes over levels that were made, and hands the next meshes to the maker. True while
     * more is to come. */
    bool Work(CGlCurrent& gl, const CPreparedScene& scene, CSceneMeshes& meshes);
    /** To be called when meshes have changed: what is being made of them is not taken over. */
    void MeshesChanged() { m_isListed = false; }
    void SetPaused(bool paused) { m_maker.SetPaused(paused); }
    void Forget();

  private:
    void List(const CPreparedScene& scene, const CSceneMeshes& meshes);
    void GiveNext(const CPreparedScene& scene);

    CLevelMaker m_maker;
    bool m_isListed = false;
    std::vector<std::uint32_t> m_waiting;  ///< meshes without levels, smallest first
};
