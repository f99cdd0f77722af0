// SPDX-License-Identifier: MIT
#include "model/open/load_scene.h"

#include <exception>
#include <string>
#include <utility>

#include "base/CStopwatch.h"
#include "base/text/lng.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/prepare_scene.h"

namespace {

CError OutOfMemory(std::string_view path) {
    return {EErrorCode::TooLarge, lng::Mark("not enough memory to open it"), std::string(path)};
}

CError Cancelled(std::string_view path) {
    return {EErrorCode::Cancelled, lng::Mark("cancelled"), std::string(path)};
}

CError TooLarge(std::string_view path) {
    return {EErrorCode::TooLarge, lng::Mark("the scene needs more memory than it may take"),
            std::string(path)};
}

/** What the arrays of a scene take as they were read. */
std::uint64_t BytesOf(const CScene& scene) {
    std::uint64_t bytes = 0;
    for (const CMeshView& mesh : scene.Meshes())
        bytes += mesh.pointCount * mesh.pointStride + mesh.texelCount * mesh.texelStride +
                 mesh.faceCount * (mesh.faceStride + mesh.smoothingStride + sizeof(std::uint16_t));
    return bytes;
}

CResult<CLoadedScene> Prepare(CScene scene, double readMs, CJobProgress* progress, const CLoadLimits& limits,
                              std::string_view path) {
    const CStopwatch watch;
    const std::uint64_t taken = BytesOf(scene);
    if (taken > limits.bytes) return TooLarge(path);
    std::atomic<std::int64_t> bytesLeft{static_cast<std::int64_t>(limits.bytes - taken)};
    if (progress) progress->SetPhase(lng::Mark("Preparing the picture..."));
    CPrepareOptions options;
    options.threads = limits.threads;
    options.progress = progress;
    options.bytesLeft = &bytesLeft;
    options.pictureBytes = limits.pictureBytes;
    CPreparedScene prepared = PrepareScene(scene, options);
    if (progress && progress->IsCancelled()) return Cancelled(path);
    if (bytesLeft < 0) return TooLarge(path);
    return CLoadedScene{std::move(scene), std::move(prepared), readMs, watch.Ms()};
}

}  // namespace

CResult<CLoadedScene> LoadScene(std::string_view path, CJobProgress* progress, const CLoadLimits& limits,
                                const CCoarseSceneTaker& takeCoarse) {
    try {
        const CStopwatch watch;
        if (progress) progress->SetPhase(lng::Mark("Reading the file..."));
        CResult<CScene> read =
            CSceneReader::ReadFile(path, limits.bytes, progress ? &progress->CancelFlag() : nullptr);
        if (!read) return read.Error();
        if (progress && progress->IsCancelled()) return Cancelled(path);
        if (takeCoarse && FaceCountOf(read.Value()) >= kCoarseFromFaces)
            takeCoarse(MakeCoarseScene(read.Value(), limits.threads));
        return Prepare(std::move(read).Value(), watch.Ms(), progress, limits, path);
    } catch (const std::exception&) {
        return OutOfMemory(path);
    }
}

CResult<CLoadedScene> LoadScene(CScene scene, CJobProgress* progress, const CLoadLimits& limits) {
    try {
        return Prepare(std::move(scene), 0, progress, limits, {});
    } catch (const std::exception&) {
        return OutOfMemory({});
    }
}
