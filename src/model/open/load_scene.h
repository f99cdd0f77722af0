// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <string_view>

#include "base/CResult.h"
#include "model/prepare/CPreparedScene.h"
#include "model/scene/CScene.h"

/** How far a scene that another thread loads has come. */
struct CLoadProgress {
    enum class EPhase { Reading, Preparing };
    std::atomic<EPhase> phase{EPhase::Reading};
    std::atomic<unsigned> meshesDone{0};
    std::atomic<unsigned> meshCount{0};  ///< 0 while reading
};

/** A scene that was read and made ready to be drawn. */
struct CLoadedScene {
    CScene scene;
    CPreparedScene prepared;
    double readMs = 0, prepareMs = 0;
};

/** Reads a scene as CSceneReader does, and prepares it; on all cores. path is UTF-8. Uses no OpenGL and
 * no windows, so any thread may do it. progress may be null. Whatever happens, running out of memory too,
 * is in the result. */
[[nodiscard]] CResult<CLoadedScene> LoadScene(std::string_view path, CLoadProgress* progress = nullptr);
/** Prepares a scene that somebody read. */
[[nodiscard]] CResult<CLoadedScene> LoadScene(CScene scene, CLoadProgress* progress = nullptr);
