// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "model/prepare/CPreparedScene.h"

class CScene;

/** From this number of faces on a coarse scene is worth its while: a smaller scene is prepared as soon. */
inline constexpr std::size_t kCoarseFromFaces = 500'000;

/** The faces of all meshes, each mesh once. */
[[nodiscard]] std::size_t FaceCountOf(const CScene& scene);

struct CCoarseScene {
    CPreparedScene scene;
    CPreparedScene kinds;  ///< of the surfaces that the scene itself will have, see KindsOf
};

/** A stand-in for a large scene, to be shown until the scene itself is prepared: the same nodes, cameras and bounds,
 * at the same frame, over meshes of a few hundred to a few thousand triangles, lit from the eye. Materials have their
 * plain colours and no pictures, and both their sides show; what can be seen through is left out. It needs a quarter of the
 * time of PrepareScene, on as many threads (0: one for each core). It refers to nothing of the scene, does not
 * move, and knows no edits, names or notes that are to be relied upon. */
[[nodiscard]] CCoarseScene MakeCoarseScene(const CScene& scene, unsigned threads = 0);
/** The one kind of surface that all coarse scenes consist of, see KindsOf. */
[[nodiscard]] CPreparedScene CoarseKind();
/** Kinds of surfaces that most scenes have: with a picture and without, one-sided and two-sided, and of glass. */
[[nodiscard]] CPreparedScene UsualKinds();
