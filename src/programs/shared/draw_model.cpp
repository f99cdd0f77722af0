// SPDX-License-Identifier: MIT
#include "programs/shared/draw_model.h"

#include "camera/CViewCamera.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "programs/shared/CPictureOptions.h"
#include "programs/shared/open_input.h"
#include "script/scene_background.h"

namespace {

constexpr std::size_t kManyTriangles = 100000;
constexpr int kSmoothSamples = 4;

bool SetCamera(C3dsDisplayWrap& engine, const CPictureOptions& options, COpenedInput& opened) {
    if (options.camera) return engine.SetCameraOfName(*options.camera);
    const std::string ofScene =
        opened.scene ? file_util_ex::ConvertToUTF8(opened.scene->camera) : std::string();
    if (!ofScene.empty() && engine.SetCameraOfName(ofScene)) return true;
    engine.SetPreset(ECameraPreset::Iso);
    if (!ofScene.empty())
        opened.notes.push_back({CSceneNote::EKind::Missing, "The model has no camera of this name", ofScene});
    return true;
}

/** What of a scene the options leave open. */
void ApplyScene(CSeenView& seen, COpenedInput& opened) {
    const CScriptScene& scene = *opened.scene;
    seen.wire = seen.wire || scene.wire.value_or(false);
    if (scene.background) seen.background = *scene.background;
    if (scene.pivot && seen.pivot == CVec3d{}) seen.pivot = *scene.pivot;
    if (scene.scale && seen.scale == CVec3d{1, 1, 1}) seen.scale = *scene.scale;
    seen.backgroundImage = ReadBackground(scene, opened.notes);
}

int SamplesFor(const CPictureOptions& options, std::size_t triangles) {
    return options.samples.value_or(triangles < kManyTriangles ? kSmoothSamples : 1);
}

}  // namespace

CStatus SetUp(C3dsDisplayWrap& engine, const CPictureOptions& options, COpenedInput& opened) {
    engine.SetPreviewSize(C2DRect(0, 0, options.width, options.height));
    engine.SetUseFileLights(options.fileLights);
    engine.SetTextureRenderMode(options.textureMode.value_or(opened.scene ? opened.scene->renderMode : 0));
    engine.SetOverlays(options.overlays);
    if (options.frame)
        engine.SetFrame(*options.frame);  // first, as presets fit the scene as it is at that frame
    if (!SetCamera(engine, options, opened))
        return CError{
            EErrorCode::BadArgument, "--camera: the file has no camera '" + *options.camera + "'", {}};
    CSeenView seen = engine.SeenView();
    seen.background = options.background;
    seen.wire = options.wire;
    options.seen.Apply(seen);
    if (opened.scene) ApplyScene(seen, opened);
    engine.SetSeenView(seen);
    return CDone{};
}

CResult<CImage> Draw(C3dsDisplayWrap& engine, COffscreenContext& context, const CPictureOptions& options) {
    const int samples = SamplesFor(options, engine.Prepared()->triangleCount);
    // If the context has fewer samples, it draws with those.
    if (samples != context.Samples()) (void)context.Resize(options.width, options.height, samples).HasValue();
    (void)context.MakeCurrent();
    engine.PaintModel();
    return context.ReadPixels();
}
