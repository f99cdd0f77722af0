// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/draw_model.h"

#include <filesystem>

#include "camera/CViewCamera.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "model/open/load_scene.h"
#include "model/prepare/CPreparedScene.h"
#include "model/textures/CModelSurroundings.h"
#include "programs/orbivue_render/CRenderOptions.h"

namespace {

constexpr std::size_t kManyTriangles = 100000;
constexpr int kSmoothSamples = 4;

bool SetCamera(C3dsDisplayWrap& engine, const std::string& name) {
    ECameraPreset preset{};
    if (!PresetOfName(name, preset)) return engine.SetFileCameraModel(name);
    engine.SetPreset(preset);
    return true;
}

int SamplesFor(const CRenderOptions& options, std::size_t triangles) {
    return options.samples.value_or(triangles < kManyTriangles ? kSmoothSamples : 1);
}

}  // namespace

CStatus OpenInput(C3dsDisplayWrap& engine, const std::string& input, const CLoadLimits& limits) {
    if (engine.OpenLoaded(LoadScene(input, nullptr, limits))) return CDone{};
    return engine.LastError();
}

CStatus SetUp(C3dsDisplayWrap& engine, const CRenderOptions& options) {
    engine.SetPreviewSize(C2DRect(0, 0, options.width, options.height));
    engine.SetUseFileLights(options.fileLights);
    engine.SetTextureRenderMode(options.textureMode);
    engine.SetOverlays(options.overlays);
    if (options.frame)
        engine.SetFrame(*options.frame);  // first, as presets fit the scene as it is at that frame
    if (!SetCamera(engine, options.camera))
        return CError{
            EErrorCode::BadArgument, "--camera: the file has no camera '" + options.camera + "'", {}};
    CSeenView seen = engine.SeenView();
    seen.background = options.background;
    seen.wire = options.wire;
    options.seen.Apply(seen);
    engine.SetSeenView(seen);
    return CDone{};
}

CResult<CImage> Draw(C3dsDisplayWrap& engine, COffscreenContext& context, const CRenderOptions& options) {
    const int samples = SamplesFor(options, engine.Prepared()->triangleCount);
    // If the context has fewer samples, it draws with those.
    if (samples != context.Samples()) (void)context.Resize(options.width, options.height, samples).HasValue();
    (void)context.MakeCurrent();
    engine.PaintModel();
    return context.ReadPixels();
}

CFileAccess FilesFor(std::span<const std::string> folders, const std::string& outputFolder) {
    CFileAccess files;
    files.readable = {file_util_ex::GetFilePath(std_file_paths::GetAppFolderPath())};
    for (const std::string& folder : folders) {
        const CModelSurroundings surroundings(folder);
        for (const std::filesystem::path& path : surroundings.Readable())
            files.readable.push_back(path.native());
        files.listable.push_back(surroundings.Folder().native());
        for (const std::filesystem::path& path : surroundings.Above())
            files.listable.push_back(path.native());
    }
    if (!outputFolder.empty()) files.writable.push_back(outputFolder);
    return files;
}
