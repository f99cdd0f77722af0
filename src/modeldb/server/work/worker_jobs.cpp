// SPDX-License-Identifier: MIT
#include "modeldb/server/work/worker_jobs.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "export/webgl/C3ds2WebGL.h"
#include "export/webgl/web_export_format.h"
#include "files/system_error.h"
#include "model/open/CSceneReader.h"
#include "model/open/load_scene.h"
#include "modeldb/server/work/unnamed_file.h"
#include "modeldb/server/work/worker_order.h"
#include "picture/image_writer.h"
#include "picture/shrink_image.h"

namespace {

constexpr CVec3 kBackground{0.24f, 0.26f, 0.30f};
constexpr int kQuality = 88;
/** Four points of what is drawn make one of the picture: cheaper than samples where all is drawn in software. */
constexpr int kDrawnSidePx = 2 * worker_order::kPreviewSidePx;

CResult<std::vector<std::byte>> ReadStretch(const CFileStretch& stretch) {
    std::vector<std::byte> bytes(stretch.bytes);
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t got = ::pread(worker_files::kInput, bytes.data() + done, bytes.size() - done,
                                    static_cast<off_t>(stretch.offset + done));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return CError{EErrorCode::Unreadable, SystemErrorText(errno), {}};
        if (got == 0) return CError{EErrorCode::Unreadable, "the file is shorter than was said", {}};
        done += static_cast<std::size_t>(got);
    }
    return bytes;
}

CResult<CTextureLocator> ReadTextures(const CWorkerOrder& order) {
    CImageDataTextVec textures;
    textures.reserve(order.textures.size());
    for (const CTextureInput& texture : order.textures) {
        CResult<std::vector<std::byte>> bytes = ReadStretch(texture.stretch);
        if (!bytes) return bytes.Error();
        textures.push_back({texture.name, std::move(bytes).Value()});
    }
    return CTextureLocator::InMemory(std::move(textures));
}

CResult<CScene> ReadScene(const CWorkerOrder& order, CTextureLocator textures) {
    CResult<std::vector<std::byte>> bytes = ReadStretch(order.model);
    if (!bytes) return bytes.Error();
    return CSceneReader::ReadBytes(std::move(bytes).Value(), std::move(textures));
}

CResult<CLoadedScene> Load(const CWorkerOrder& order, std::uint64_t pictureBytes) {
    CResult<CTextureLocator> textures = ReadTextures(order);
    if (!textures) return textures.Error();
    CResult<CScene> scene = ReadScene(order, std::move(textures).Value());
    if (!scene) return scene.Error();
    CLoadLimits limits;
    limits.threads = 1;  // there is a process for each core
    limits.pictureBytes = pictureBytes;
    return LoadScene(std::move(scene).Value(), nullptr, limits);
}

/** A name whose last part a page does not take for that of a file. */
std::string TitleOf(std::string_view name) {
    std::string title;
    for (const char c : name) title += c == '/' ? std::string("\u2215") : std::string(1, c);
    return title;
}

C3ds2WebGL::COutFormat PageFormat(const CWorkerOrder& order) {
    C3ds2WebGL::COutFormat format;
    format.minify = true;
    format.combine = true;
    format.camerasBar = true;
    format.bkRed = kBackground.x;
    format.bkGreen = kBackground.y;
    format.bkBlue = kBackground.z;
    format.cameraName = "iso_cam";
    format.modelFileName = TitleOf(order.name) + ".3ds";
    format.version = ORBIVUE_VERSION;
    return format;
}

}  // namespace

CStatus worker_jobs::Inspect(const CWorkerOrder& order) {
    const CResult<CScene> scene = ReadScene(order, {});
    if (!scene) return scene.Error();
    const auto& notes = scene.Value().Notes();
    const auto repaired = std::ranges::find(notes, CSceneNote::EKind::Repaired, &CSceneNote::kind);
    if (repaired != notes.end())
        return CError{EErrorCode::BadFormat, std::string("the file is damaged: ") + repaired->what, {}};
    const auto hasFaces = [](const CMeshView& mesh) { return mesh.faceCount > 0; };
    if (std::ranges::any_of(scene.Value().Meshes(), hasFaces)) return CDone{};
    return CError{EErrorCode::BadFormat, "the file holds no mesh that could be seen", {}};
}

CResult<std::vector<std::byte>> worker_jobs::DrawPreview(const CWorkerOrder& order) {
    // Of a small picture's textures hardly a pixel in ten is seen.
    constexpr std::uint64_t kPictureBytes = 16 << 20;
    CResult<CLoadedScene> loaded = Load(order, kPictureBytes);
    if (!loaded) return loaded.Error();
    CResult<COffscreenContext> context = COffscreenContext::Create(kDrawnSidePx, kDrawnSidePx);
    if (!context) return context.Error();
    C3dsDisplayWrap engine;
    engine.SetViewingOnly(true);
    engine.SetPreviewSize(C2DRect(0, 0, kDrawnSidePx, kDrawnSidePx));
    if (!engine.OpenLoaded(std::move(loaded))) return engine.LastError();
    engine.SetPreset(ECameraPreset::Iso);
    engine.SetBkColors(kBackground.x, kBackground.y, kBackground.z);
    engine.PaintModel();
    CResult<CImage> drawn = context.Value().ReadPixels();
    if (!drawn) return drawn.Error();
    const CImage picture = ShrinkImage(std::move(drawn).Value(), worker_order::kPreviewSidePx);
    return image_codec::JpegBytes(picture, kQuality);
}

CStatus worker_jobs::WritePage(const CWorkerOrder& order) {
    const CResult<CLoadedScene> loaded = Load(order, scene_budget::kPictureBytes);
    if (!loaded) return loaded.Error();
    const C3ds2WebGL::COutFormat format = PageFormat(order);
    const CLoadedScene& scene = loaded.Value();
    const CWebGLSource source{scene.prepared, scene.scene.Textures(),
                              web_export_format::SeenViewOf(scene.prepared, format), CPageTexts::English(),
                              &scene.scene};
    const CResult<std::string> page = C3ds2WebGL::CombinedPage(source, format);
    if (!page) return page.Error();
    return unnamed_file::AppendTo(worker_files::kPage, std::as_bytes(std::span(page.Value())));
}
