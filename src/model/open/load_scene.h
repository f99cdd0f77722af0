// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string_view>

#include "base/CResult.h"
#include "base/jobs/CJobProgress.h"
#include "model/coarse/coarse_scene.h"
#include "model/prepare/CPreparedScene.h"
#include "model/scene/CScene.h"
#include "model/scene/scene_budget.h"

/** What loading a scene may use. */
struct CLoadLimits {
    unsigned threads = 0;  ///< 0: one for each core
    /** For the bytes of the file, the prepared vertices and the decoded pictures together; beyond them
     * loading ends with TooLarge. */
    std::uint64_t bytes = std::numeric_limits<std::int64_t>::max();
    /** For the decoded pictures; beyond it they are made smaller. */
    std::uint64_t pictureBytes = scene_budget::kPictureBytes;
};

/** A scene that was read and made ready to be drawn. */
struct CLoadedScene {
    CScene scene;
    CPreparedScene prepared;
    double readMs = 0, prepareMs = 0;
};

/** Receives a stand-in for the scene (see MakeCoarseScene) on the thread that loads. */
using CCoarseSceneTaker = std::function<void(CCoarseScene)>;

/** Reads a scene as CSceneReader does, and prepares it. path is UTF-8. Uses no OpenGL and no windows, so any
 * thread may call it. progress may be null; its phases are reading and preparing, and its share is that of
 * the prepared meshes. When it is cancelled, loading ends soon with Cancelled (but converts an OBJ file to
 * its end first). Every failure, also lack of memory, is in the result. takeCoarse, which may be empty, is called
 * once for a large scene when it has been read, before it is prepared. */
[[nodiscard]] CResult<CLoadedScene> LoadScene(std::string_view path, CJobProgress* progress = nullptr,
                                              const CLoadLimits& limits = {},
                                              const CCoarseSceneTaker& takeCoarse = {});
/** Prepares a scene that was read already. */
[[nodiscard]] CResult<CLoadedScene> LoadScene(CScene scene, CJobProgress* progress = nullptr,
                                              const CLoadLimits& limits = {});
