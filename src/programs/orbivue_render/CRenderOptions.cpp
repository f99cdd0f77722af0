// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/CRenderOptions.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "base/text/file_uri.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "programs/shared/option_table.h"
#include "programs/shared/option_values.h"

namespace {

using option_table::COutcome;
using option_values::Number;

COutcome SetSamples(CRenderOptions& options, std::string_view value) {
    options.samples = Number<int>(value);
    if (!options.samples || *options.samples < 1 || *options.samples > 32)
        return lng::TextUtf8("needs a number from 1 to 32");
    return {};
}

COutcome SetTextureMode(CRenderOptions& options, std::string_view value) {
    const auto mode = Number<int>(value);
    if (!mode || *mode < 0 || *mode > 3) return lng::TextUtf8("needs a number from 0 to 3");
    options.textureMode = *mode;
    return {};
}

COutcome SetOverlays(CRenderOptions& options, std::string_view value) {
    constexpr std::array<std::pair<std::string_view, bool COverlays::*>, 4> kNames{
        {{"bounds", &COverlays::bounds},
         {"cameras", &COverlays::cameras},
         {"lights", &COverlays::lights},
         {"axes", &COverlays::axes}}};
    for (const std::string_view part : option_values::Split(value, ',')) {
        bool known = false;
        for (const auto& [name, member] : kNames) {
            if (part != name) continue;
            options.overlays.*member = true;
            known = true;
        }
        if (!known) return lng::TextUtf8("needs a list of bounds, cameras, lights and axes");
    }
    return {};
}

COutcome SetNoFileLights(CRenderOptions& options, std::string_view) {
    options.fileLights = false;
    return {};
}
COutcome SetStats(CRenderOptions& options, std::string_view) {
    options.stats = true;
    return {};
}
COutcome SetConfined(CRenderOptions& options, std::string_view) {
    options.confined = true;
    return {};
}
COutcome SetBatch(CRenderOptions& options, std::string_view) {
    options.batch = true;
    return {};
}
COutcome SetNull(CRenderOptions& options, std::string_view) {
    options.nullSeparated = true;
    return {};
}
COutcome SetInto(CRenderOptions& options, std::string_view value) {
    if (value.empty()) return lng::TextUtf8("needs a folder");
    options.into = value;
    return {};
}
/** For file managers: a square, and nothing of the file is trusted. */
COutcome SetThumbnail(CRenderOptions& options, std::string_view value) {
    const auto side = Number<int>(value);
    if (!side || *side < 1 || *side > kMaxThumbnailSide)
        return lng::TextUtf8("needs a number of pixels from 1 to %s", {std::to_string(kMaxThumbnailSide)});
    options.width = options.height = *side;
    options.confined = options.isThumbnail = true;
    return {};
}
COutcome SetHelp(CRenderOptions& options, std::string_view) {
    options.action = CRenderOptions::EAction::Help;
    return {};
}
COutcome SetVersion(CRenderOptions& options, std::string_view) {
    options.action = CRenderOptions::EAction::Version;
    return {};
}

constexpr std::array<option_table::CEntry<CRenderOptions>, 12> kOwnOptions{{
    {"samples", "N", SetSamples, lng::Mark("samples for each pixel (4; 1 from 100,000 triangles on)")},
    {"texture-mode", "N", SetTextureMode, lng::Mark("0 trilinear, 1 bilinear, 2 nearest, 3 no textures (0)")},
    {"overlay", "LIST", SetOverlays, lng::Mark("draw some of bounds,cameras,lights,axes over the scene")},
    {"no-file-lights", "", SetNoFileLights, lng::Mark("light from the eye, not by the lights of the file")},
    {"stats", "", SetStats, lng::Mark("print facts about the scene and the run as JSON")},
    {"confined", "", SetConfined,
     lng::Mark("for files of strangers: limits, no network, no other files or programs")},
    {"thumbnail", "SIZE", SetThumbnail,
     lng::Mark("for file managers: a square, --confined; INPUT may be a file:// address")},
    {"batch", "", SetBatch,
     lng::Mark("draw all INPUTs, or those that standard input names, one a line; prints JSON lines")},
    {"into", "FOLDER", SetInto, lng::Mark("where a batch's pictures go, called 1.png, 2.png ...")},
    {"null", "", SetNull, lng::Mark("names on standard input end with a NUL byte")},
    {"help", "", SetHelp, lng::Mark("print this help")},
    {"version", "", SetVersion, lng::Mark("print the version")},
}};
constexpr auto kOptions = option_table::Joined(option_values::kSeenOptions<CRenderOptions>, kOwnOptions);

CResult<CRenderOptions> WithInputs(CRenderOptions options, std::span<const std::string> files) {
    if (options.stats) return option_table::Wrong(lng::TextUtf8("--batch prints no statistics (--stats)"));
    if (options.into.empty()) return option_table::Wrong(lng::TextUtf8("--batch needs --into FOLDER"));
    options.inputs.assign(files.begin(), files.end());
    return options;
}

/** Adds the file names, which are the arguments that are not options. */
CResult<CRenderOptions> WithFiles(CRenderOptions options, std::span<const std::string> files) {
    if (options.batch) return WithInputs(std::move(options), files);
    if (files.empty()) return option_table::Wrong(lng::TextUtf8("no input file given"));
    if (files.size() > 2) return option_table::Wrong(lng::TextUtf8("too many files given"));
    options.input = files[0];
    if (options.input.empty())
        return option_table::Wrong(lng::TextUtf8("the name of the input file is empty"));
    if (options.isThumbnail) {
        CResult<std::string> path = file_uri::PathOfArgument(options.input);
        if (!path) return path.Error();
        options.input = std::move(path).Value();
    }
    if (files.size() == 2) {
        options.output = files[1];
        if (options.output.empty())
            return option_table::Wrong(lng::TextUtf8("the name of the output file is empty"));
    } else if (!options.stats) {
        options.output = file_util_ex::SetFileExt(file_util_ex::GetFileName(options.input), "png");
    }
    return options;
}

}  // namespace

CResult<CRenderOptions> ParseRenderOptions(std::span<const std::string> arguments) {
    CRenderOptions options;
    const CResult<std::vector<std::string>> files = option_table::Read(kOptions, arguments, options);
    if (!files) return files.Error();
    if (options.action != CRenderOptions::EAction::Draw) return options;
    return WithFiles(std::move(options), files.Value());
}

std::string RenderHelp() {
    return option_table::Usage({"orbivue-render [OPTION]... INPUT [OUTPUT.png]",
                                "orbivue-render --batch --into FOLDER [OPTION]... [INPUT]..."}) +
           lng::TextUtf8(
               "Draws a 3DS, OBJ or zipped model into a PNG picture; no display is needed.\n"
               "Without OUTPUT the picture goes to the current folder, under INPUT's name with\n"
               "the extension png; with --stats and no OUTPUT no picture is written.") +
           "\n\n" + option_table::Help(option_table::NamesOf(kOptions)) + "\n" +
           lng::TextUtf8(
               "Exit codes: 0 done, 1 wrong usage, 2 the model cannot be read, 3 the picture\n"
               "cannot be written, 4 there is no OpenGL to draw with.") +
           "\n";
}
