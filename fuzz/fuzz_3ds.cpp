// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/open/CSceneReader.h"
#include "model/prepare/prepare_scene.h"

/** Any bytes: read as a 3DS file, prepare, evaluate, and complete the structure that is
 * saved and exported. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto* begin = reinterpret_cast<const std::byte*>(data);
    CResult<CScene> scene = CSceneReader::ReadBytes(std::vector<std::byte>(begin, begin + size));
    if (!scene) return 0;
    CPreparedScene prepared = PrepareScene(scene.Value(), {.threads = 1, .loadTextures = false});
    for (const float frame : {-5.0f, 0.5f, 17.0f, 1e6f}) EvaluateNodes(prepared, scene.Value(), frame);
    (void)scene.Value().File();
    return 0;
}
