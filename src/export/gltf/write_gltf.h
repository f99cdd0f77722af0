// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/CResult.h"

class CJobProgress;
class CScene;
class CTextureLocator;
struct CPreparedScene;

/** How a scene is written as glTF. */
struct CGltfOptions {
    bool compress = false;     ///< KHR_mesh_quantization and EXT_meshopt_compression, which readers must know
    bool withExtras = true;    ///< what this program draws with, as "orbivue" in the extras
    bool doubleSided = false;  ///< every material
    int maxTextureSide = 0;    ///< pixels; larger pictures are halved until they fit; 0: none is too large
    bool withTextures = true;
};

/** What to write: a prepared scene, whose pictures must be loaded. Nothing of it is changed. */
struct CGltfSource {
    const CPreparedScene& scene;      ///< not owned; the scene that it was made of must still be there
    const CTextureLocator& textures;  ///< where its pictures come from; not owned
    /** The scene that it was made of, not owned. Without it, meshes that change their shape keep the one that they
     * have. */
    const CScene* model = nullptr;
};

/** The scene as a glTF 2.0 binary (GLB); docs/web-page.md tells what is in it. Works on all cores. TooLarge: it would
 * have over 4 GB. Cancelled: progress, which may be null, was cancelled. Needs no display. */
[[nodiscard]] CResult<std::vector<std::byte>> WriteGlb(const CGltfSource& source, const CGltfOptions& options,
                                                       CJobProgress* progress = nullptr);

/** The same as a file, which is replaced in one step: after a failure an older one is as before. output is UTF-8. It is
 * BadArgument when it would overwrite a file of the model or one of its pictures. */
[[nodiscard]] CStatus WriteGlbFile(const CGltfSource& source, const std::string& output,
                                   const CGltfOptions& options, CJobProgress* progress = nullptr);
