// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <future>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "base/CStopwatch.h"
#include "base/process_memory.h"
#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "files/file_util_ex.h"
#include "model/open/load_scene.h"
#include "picture/image_writer.h"
#include "process/confine.h"
#include "programs/orbivue_render/CRenderOptions.h"
#include "programs/orbivue_render/complain.h"
#include "programs/orbivue_render/render_stats.h"
#include "programs/orbivue_render/run_batch.h"
#include "programs/orbivue_render/script_icon.h"
#include "programs/shared/draw_model.h"
#include "programs/shared/input_files.h"
#include "programs/shared/open_input.h"
#include "settings/language_catalogue.h"

namespace {

std::optional<CConfined> ConfineIfAsked(const CRenderOptions& options) {
    if (!options.confined) return std::nullopt;
    const std::string outputFolder = file_util_ex::GetFilePath(options.output);
    const bool writes = !options.output.empty();
    const CFileAccess files =
        FilesFor({&options.input, 1}, writes && outputFolder.empty() ? "." : outputFolder, options.scene);
    return ConfineProcess({LimitsForDrawing(), files});
}

int WriteIcon(const CImage& icon, const std::string& output) {
    const CStatus written = image_codec::WritePng(output, icon, true);
    return written ? kDone : Complain(written.Error(), kCannotWrite);
}

int Run(const CRenderOptions& options) {
    const CStopwatch start;
    // Programs read what the one says; the other has no access to catalogues.
    if (options.stats || options.confined) lng::UseEnglish();
    const std::optional<CConfined> confined = ConfineIfAsked(options);
    if (options.isThumbnail)
        if (const auto icon = IconOf(options.input, options.scene, options.width))
            return WriteIcon(*icon, options.output);
    C3dsDisplayWrap engine;
    CLoadLimits limits;
    limits.pictureBytes = scene_budget::kPictureBytesForOneView;
    // Starting OpenGL takes as long as reading a middling file, so both go on at once.
    std::future<CResult<COpenedInput>> opening = std::async(
        std::launch::async, [&] { return OpenInput(engine, options.input, limits, options.scene); });
    CResult<COffscreenContext> made =
        COffscreenContext::Create(options.width, options.height, options.samples.value_or(1));
    CResult<COpenedInput> opened = opening.get();
    if (!opened) return Complain(opened.Error(), kCannotRead);
    if (!made) return Complain(made.Error(), kNoGraphics);
    COffscreenContext& context = made.Value();
    if (const CStatus ready = SetUp(engine, options, opened.Value()); !ready)
        return Complain(ready.Error(), kUsage);

    CRenderTimes times{engine.GetReadMs(), engine.GetPrepareMs(), 0, 0, 0};
    const CStopwatch drawing;
    const CResult<CImage> picture = Draw(engine, context, options);
    if (!picture) return Complain(picture.Error(), kNoGraphics);
    times.draw = drawing.Ms();
    if (!options.output.empty()) {
        const CStopwatch writing;
        const CStatus written = image_codec::WritePng(options.output, picture.Value(), false);
        if (!written) return Complain(written.Error(), kCannotWrite);
        times.write = writing.Ms();
    }
    times.total = start.Ms();
    if (!options.stats) return kDone;
    const std::string json = RenderStatsJson(engine, opened.Value().notes, times, context.RendererName(),
                                             context.Samples(), confined);
    return Print(json) ? kDone : Complain(lng::TextUtf8("the statistics cannot be written"), kCannotWrite);
}

int Main(const std::vector<std::string>& arguments) {
    const CResult<CRenderOptions> parsed = ParseRenderOptions(arguments);
    if (!parsed) return Complain(lng::TextUtf8("%s (see --help)", {parsed.Error().message}), kUsage);
    switch (parsed.Value().action) {
        case CRenderOptions::EAction::Help:
            return Print(RenderHelp()) ? kDone : kCannotWrite;
        case CRenderOptions::EAction::Version:
            return Print("orbivue-render " ORBIVUE_VERSION "\n") ? kDone : kCannotWrite;
        case CRenderOptions::EAction::Draw:
            break;
    }
    return parsed.Value().batch ? RunBatch(parsed.Value()) : Run(parsed.Value());
}

}  // namespace

int main(int argc, char** argv) {
    lng::UseDesktopLanguage();
    process_memory::ShareOneHeap();
    process_memory::KeepFreedBlocks();
    try {
        const int code = Main({argv + (argc > 0 ? 1 : 0), argv + argc});
        std::fflush(nullptr);
        // Ends without destructors: nothing is left to save, and freeing a large scene piece by piece
        // takes time.
        ::_exit(code);
    } catch (const std::bad_alloc&) {
        return Complain(lng::TextUtf8("not enough memory"), kCannotRead);
    } catch (const std::exception& error) {
        return Complain(error.what(), kCannotRead);
    }
}
