// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <string_view>

#include "base/CResult.h"
#include "model/prepare/CPreparedScene.h"
#include "model/scene/CScene.h"

/** How far a scene that another thread loads has come; and the way to tell that thread that nobody waits
 * for it any more. */
struct CLoadProgress {
    enum class EPhase { Reading, Preparing };
    std::atomic<EPhase> phase{EPhase::Reading};
    std::atomic<unsigned> meshesDone{0};
    std::atomic<unsigned> meshCount{0};  ///< 0 while reading
    /** Set by whoever waits: the loading ends soon, with Cancelled. Converting an OBJ file goes on to its end
     * first. */
    std::atomic<bool> cancelled{false};
};

/** What a loading may take. */
struct CLoadLimits {
    unsigned threads = 0;  ///< 0: one for each core
    /** For the bytes of the file, the prepared vertices and the decoded pictures together; beyond them the
     * loading ends with TooLarge. */
    std::uint64_t bytes = std::numeric_limits<std::int64_t>::max();
};

/** A scene that was read and made ready to be drawn. */
struct CLoadedScene {
    CScene scene;
    CPreparedScene prepared;
    double readMs = 0, prepareMs = 0;
};

/** Reads a scene as CSceneReader does, and prepares it. path is UTF-8. Uses no OpenGL and no windows, so any
 * thread may do it. progress may be null. Whatever happens, running out of memory too, is in the result. */
[[nodiscard]] CResult<CLoadedScene> LoadScene(std::string_view path, CLoadProgress* progress = nullptr,
                                              const CLoadLimits& limits = {});
/** Prepares a scene that somebody read. */
[[nodiscard]] CResult<CLoadedScene> LoadScene(CScene scene, CLoadProgress* progress = nullptr,
                                              const CLoadLimits& limits = {});
