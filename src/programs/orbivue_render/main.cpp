// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <future>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "base/CStopwatch.h"
#include "base/process_memory.h"
#include "base/text/utf8_text.h"
#include "camera/CViewCamera.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "model/prepare/CPreparedScene.h"
#include "model/textures/CModelSurroundings.h"
#include "picture/image_writer.h"
#include "process/confine.h"
#include "programs/orbivue_render/CRenderOptions.h"
#include "programs/orbivue_render/render_stats.h"

namespace {

enum EExit { kDone = 0, kUsage = 1, kCannotRead = 2, kCannotWrite = 3, kNoGraphics = 4 };

constexpr std::size_t kManyTriangles = 100000;
constexpr int kSmoothSamples = 4;

int Complain(const std::string& message, EExit code) {
    // A stranger may have named files.
    std::fprintf(stderr, "orbivue-render: %s\n", utf8_text::Printable(message, ' ').c_str());
    return code;
}

bool Print(const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

bool SetCamera(C3dsDisplayWrap& engine, const std::string& name) {
    ECameraPreset preset{};
    if (!PresetOfName(name, preset)) return engine.SetFileCameraModel(name);
    engine.SetPreset(preset);
    return true;
}

/** Sets the frame first, because presets fit the scene as it is at that frame. */
bool SetUp(C3dsDisplayWrap& engine, const CRenderOptions& options) {
    engine.SetPreviewSize(C2DRect(0, 0, options.width, options.height));
    engine.SetUseFileLights(options.fileLights);
    engine.SetTextureRenderMode(options.textureMode);
    engine.SetOverlays(options.overlays);
    if (options.frame) engine.SetFrame(*options.frame);
    if (!SetCamera(engine, options.camera)) return false;
    CSeenView seen = engine.SeenView();
    seen.background = options.background;
    seen.wire = options.wire;
    options.seen.Apply(seen);
    engine.SetSeenView(seen);
    return true;
}

CResult<CImage> Draw(C3dsDisplayWrap& engine, COffscreenContext& context) {
    (void)context.MakeCurrent();
    engine.PaintModel();
    return context.ReadPixels();
}

/** The files that a picture of the model needs. */
CFileAccess FilesFor(const CRenderOptions& options) {
    const CModelSurroundings surroundings(file_util_ex::GetFilePath(options.input));
    CFileAccess files;
    files.readable = {options.input, file_util_ex::GetFilePath(std_file_paths::GetAppFolderPath())};
    for (const std::filesystem::path& path : surroundings.Readable()) files.readable.push_back(path.native());
    files.listable.push_back(surroundings.Folder().native());
    for (const std::filesystem::path& path : surroundings.Above()) files.listable.push_back(path.native());
    if (!options.output.empty()) {
        const std::string folder = file_util_ex::GetFilePath(options.output);
        files.writable.push_back(folder.empty() ? "." : folder);
    }
    return files;
}

std::optional<CConfined> ConfineIfAsked(const CRenderOptions& options) {
    if (!options.confined) return std::nullopt;
    return ConfineProcess({LimitsForDrawing(), FilesFor(options)});
}

int Run(const CRenderOptions& options) {
    const CStopwatch start;
    const std::optional<CConfined> confined = ConfineIfAsked(options);
    C3dsDisplayWrap engine;
    engine.SetViewingOnly(true);
    const std::wstring path = file_util_ex::PathFromBytes(options.input);
    // Starting OpenGL takes as long as reading a middling file, so both go on at once.
    std::future<bool> opened = std::async(std::launch::async, [&] { return engine.OpenModel(path.c_str()); });
    CResult<COffscreenContext> made =
        COffscreenContext::Create(options.width, options.height, options.samples.value_or(1));
    if (!opened.get()) return Complain(engine.LastError().Text(), kCannotRead);
    if (!made) return Complain(made.Error().Text(), kNoGraphics);
    COffscreenContext& context = made.Value();
    if (!SetUp(engine, options)) {
        return Complain("--camera: the file has no camera '" + options.camera + "'", kUsage);
    }
    if (!options.samples && engine.Prepared()->triangleCount < kManyTriangles) {
        // If the context has fewer samples, it draws with those.
        (void)context.Resize(options.width, options.height, kSmoothSamples).HasValue();
    }

    CRenderTimes times{engine.GetReadMs(), engine.GetPrepareMs(), 0, 0, 0};
    const CStopwatch drawing;
    const CResult<CImage> picture = Draw(engine, context);
    if (!picture) return Complain(picture.Error().Text(), kNoGraphics);
    times.draw = drawing.Ms();
    if (!options.output.empty()) {
        const CStopwatch writing;
        const CStatus written = image_codec::WritePng(options.output, picture.Value(), false);
        if (!written) return Complain(written.Error().Text(), kCannotWrite);
        times.write = writing.Ms();
    }
    times.total = start.Ms();
    if (!options.stats) return kDone;
    const std::string json =
        RenderStatsJson(engine, times, context.RendererName(), context.Samples(), confined);
    return Print(json) ? kDone : Complain("the statistics cannot be written", kCannotWrite);
}

int Main(const std::vector<std::string>& arguments) {
    const CResult<CRenderOptions> parsed = ParseRenderOptions(arguments);
    if (!parsed) return Complain(parsed.Error().Text() + " (see --help)", kUsage);
    switch (parsed.Value().action) {
        case CRenderOptions::EAction::Help:
            return Print(RenderHelp()) ? kDone : kCannotWrite;
        case CRenderOptions::EAction::Version:
            return Print("orbivue-render " ORBIVUE_VERSION "\n") ? kDone : kCannotWrite;
        case CRenderOptions::EAction::Draw:
            break;
    }
    return Run(parsed.Value());
}

}  // namespace

int main(int argc, char** argv) {
    process_memory::ShareOneHeap();
    process_memory::KeepFreedBlocks();
    try {
        const int code = Main({argv + (argc > 0 ? 1 : 0), argv + argc});
        std::fflush(nullptr);
        // Ends without destructors: nothing is left to save, and freeing a large scene piece by piece
        // takes time.
        ::_exit(code);
    } catch (const std::bad_alloc&) {
        return Complain("not enough memory", kCannotRead);
    } catch (const std::exception& error) {
        return Complain(error.what(), kCannotRead);
    }
}
