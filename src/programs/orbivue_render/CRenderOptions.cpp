// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/CRenderOptions.h"

#include <getopt.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

#include "base/text/file_uri.h"
#include "files/file_util_ex.h"

namespace {

using COutcome = std::optional<std::string>;  // what is wrong with a value

/** The whole text as a number; neither "1.5x" nor "nan" is one. */
template <class T>
std::optional<T> Number(std::string_view text) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(value)) return std::nullopt;
    }
    return value;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

COutcome SetSize(CRenderOptions& options, std::string_view value) {
    const auto parts = Split(value, 'x');
    const auto width = parts.size() == 2 ? Number<int>(parts[0]) : std::nullopt;
    const auto height = parts.size() == 2 ? Number<int>(parts[1]) : std::nullopt;
    if (!width || !height) return "needs WIDTHxHEIGHT in pixels";
    if (*width < 1 || *height < 1 || *width > kMaxPictureSide || *height > kMaxPictureSide) {
        return "each side must be from 1 to " + std::to_string(kMaxPictureSide) + " pixels";
    }
    options.width = *width;
    options.height = *height;
    return {};
}

COutcome SetCamera(CRenderOptions& options, std::string_view value) {
    if (value.empty()) return "needs a name";
    options.camera = value;
    return {};
}

COutcome SetScene(CRenderOptions& options, std::string_view value) {
    const auto number = Number<std::size_t>(value);
    if (!number || *number < 1) return "needs a number from 1 on";
    options.scene = *number - 1;
    return {};
}

COutcome SetFrame(CRenderOptions& options, std::string_view value) {
    options.frame = Number<float>(value);
    if (!options.frame) return "needs a number";
    return {};
}

COutcome SetBackground(CRenderOptions& options, std::string_view value) {
    const auto parts = Split(value, ',');
    std::array<float, 3> rgb{};
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        const auto number = parts.size() == rgb.size() ? Number<int>(parts[i]) : std::nullopt;
        if (!number || *number < 0 || *number > 255) return "needs R,G,B, each from 0 to 255";
        rgb[i] = static_cast<float>(*number) / 255.0f;
    }
    options.background = {rgb[0], rgb[1], rgb[2]};
    return {};
}

COutcome SetSamples(CRenderOptions& options, std::string_view value) {
    options.samples = Number<int>(value);
    if (!options.samples || *options.samples < 1 || *options.samples > 32)
        return "needs a number from 1 to 32";
    return {};
}

COutcome SetTextureMode(CRenderOptions& options, std::string_view value) {
    const auto mode = Number<int>(value);
    if (!mode || *mode < 0 || *mode > 3) return "needs a number from 0 to 3";
    options.textureMode = *mode;
    return {};
}

COutcome SetOverlays(CRenderOptions& options, std::string_view value) {
    constexpr std::array<std::pair<std::string_view, bool COverlays::*>, 4> kNames{
        {{"bounds", &COverlays::bounds},
         {"cameras", &COverlays::cameras},
         {"lights", &COverlays::lights},
         {"axes", &COverlays::axes}}};
    for (const std::string_view part : Split(value, ',')) {
        bool known = false;
        for (const auto& [name, member] : kNames) {
            if (part != name) continue;
            options.overlays.*member = true;
            known = true;
        }
        if (!known) return "needs a list of bounds, cameras, lights and axes";
    }
    return {};
}

/** An option of CSeenOptions, by its name without the dashes. */
template <std::size_t length>
struct CName {
    constexpr CName(const char (&text)[length]) { std::copy_n(text, length, chars); }
    char chars[length]{};
};
template <CName name>
COutcome SetSeen(CRenderOptions& options, std::string_view value) {
    return options.seen.Set(name.chars, value);
}

COutcome SetWire(CRenderOptions& options, std::string_view) {
    options.wire = true;
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
    if (value.empty()) return "needs a folder";
    options.into = value;
    return {};
}
/** For file managers: a square, and nothing of the file is trusted. */
COutcome SetThumbnail(CRenderOptions& options, std::string_view value) {
    const auto side = Number<int>(value);
    if (!side || *side < 1 || *side > kMaxThumbnailSide)
        return "needs a number of pixels from 1 to " + std::to_string(kMaxThumbnailSide);
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

struct COptionEntry {
    const char* name;
    std::string_view value;  ///< what to call it in the help; empty when the option takes none
    COutcome (*set)(CRenderOptions&, std::string_view);
    std::string_view help;
};

constexpr std::array<COptionEntry, 26> kOptions{{
    {"size", "WxH", SetSize, "size of the picture in pixels (1024x768)"},
    {"camera", "NAME", SetCamera, "top, left, right, front, back, iso, or a camera of the file (iso)"},
    {"scene", "N", SetScene, "scene of a scene script (1)"},
    {"angles", "X,Y,Z", SetSeen<"angles">, "turns the model about Z, then Y, then X, by degrees"},
    {"turn", "X,Y,Z", SetSeen<"turn">, "turns it once more so, as the mouse does"},
    {"orbit", "DEGREES", SetSeen<"orbit">, "turns the eye about the axis of the camera's name"},
    {"pivot", "X,Y,Z", SetSeen<"pivot">, "moves the point that --turn and --scale are about"},
    {"scale", "X,Y,Z", SetSeen<"scale">, "stretches the turned model"},
    {"pan", "DX,DY", SetSeen<"pan">, "moves the model by pixels, to the right and down"},
    {"zoom-box", "L,T,R,B", SetSeen<"zoom-box">, "pixels of the picture that are to fill it"},
    {"zoom", "STEP", SetSeen<"zoom">, "as the wheel: 20 for each notch away from the model"},
    {"frame", "N", SetFrame, "frame of the animation (the file's current one)"},
    {"background", "R,G,B", SetBackground,
     "background colour, 0 to 255 each (61,66,77); a script's own counts more"},
    {"samples", "N", SetSamples, "samples for each pixel (4; 1 from 100,000 triangles on)"},
    {"texture-mode", "N", SetTextureMode, "0 trilinear, 1 bilinear, 2 nearest, 3 no textures (0)"},
    {"overlay", "LIST", SetOverlays, "draw some of bounds,cameras,lights,axes over the scene"},
    {"wire", "", SetWire, "draw the edges of the triangles only"},
    {"no-file-lights", "", SetNoFileLights, "light from the eye, not by the lights of the file"},
    {"stats", "", SetStats, "print facts about the scene and the run as JSON"},
    {"confined", "", SetConfined, "for files of strangers: limits, no network, no other files or programs"},
    {"thumbnail", "SIZE", SetThumbnail,
     "for file managers: a square, --confined; INPUT may be a file:// address"},
    {"batch", "", SetBatch,
     "draw all INPUTs, or those that standard input names, one a line; prints JSON lines"},
    {"into", "FOLDER", SetInto, "where a batch's pictures go, called 1.png, 2.png ..."},
    {"null", "", SetNull, "names on standard input end in a zero byte"},
    {"help", "", SetHelp, "print this help"},
    {"version", "", SetVersion, "print the version"},
}};

/** What getopt_long gives for the first option; all characters lie below. */
constexpr int kFirstOption = 256;
constexpr int kMissingValue = ':', kUnknown = '?', kHelpLetter = 'h';

std::string Dashed(const COptionEntry& entry) {
    return std::string("--") + entry.name;
}

const COptionEntry& EntryOf(int number) {
    return kOptions[static_cast<std::size_t>(number - kFirstOption)];
}

std::array<option, kOptions.size() + 2> LongOptions() {
    std::array<option, kOptions.size() + 2> options{};  // the last one, all zero, is the end
    for (std::size_t i = 0; i < kOptions.size(); ++i) {
        const COptionEntry& entry = kOptions[i];
        const int number = kFirstOption + static_cast<int>(i);
        options[i] = {entry.name, entry.value.empty() ? no_argument : required_argument, nullptr, number};
    }
    return options;
}

CError Wrong(const std::string& message) {
    return {EErrorCode::BadArgument, message, {}};
}

/** What is wrong with the option that getopt_long has just refused. */
CError Refusal(int why, std::string_view word) {
    if (why == kMissingValue) return Wrong(Dashed(EntryOf(optopt)) + " needs a value");
    if (optopt >= kFirstOption) return Wrong(Dashed(EntryOf(optopt)) + " takes no value");
    const std::string letter{'-', static_cast<char>(optopt)};
    return Wrong("unknown option '" + (optopt != 0 ? letter : std::string(word.substr(0, word.find('=')))) +
                 "'");
}

CResult<CRenderOptions> WithInputs(CRenderOptions options, std::span<char* const> files) {
    if (options.stats) return Wrong("--batch prints no --stats");
    if (options.into.empty()) return Wrong("--batch needs --into FOLDER");
    options.inputs.assign(files.begin(), files.end());
    return options;
}

/** Adds the file names, which are the arguments that are not options. */
CResult<CRenderOptions> WithFiles(CRenderOptions options, std::span<char* const> files) {
    if (options.batch) return WithInputs(std::move(options), files);
    if (files.empty()) return Wrong("no input file given");
    if (files.size() > 2) return Wrong("too many files given");
    options.input = files[0];
    if (options.input.empty()) return Wrong("the name of the input file is empty");
    if (options.isThumbnail) {
        CResult<std::string> path = file_uri::PathOfArgument(options.input);
        if (!path) return path.Error();
        options.input = std::move(path).Value();
    }
    if (files.size() == 2) {
        options.output = files[1];
        if (options.output.empty()) return Wrong("the name of the output file is empty");
    } else if (!options.stats) {
        options.output = file_util_ex::SetFileExt(file_util_ex::GetFileName(options.input), "png");
    }
    return options;
}

}  // namespace

CResult<CRenderOptions> ParseRenderOptions(std::span<const std::string> arguments) {
    std::vector<std::string> words{"orbivue-render"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    CRenderOptions options;
    static const auto kLong = LongOptions();
    const int count = static_cast<int>(words.size());
    opterr = 0;  // no messages of its own
    optind = 0;  // restarts getopt
    for (int got = 0; (got = getopt_long(count, argv.data(), ":h", kLong.data(), nullptr)) != -1;) {
        if (got == kMissingValue || got == kUnknown)
            return Refusal(got, argv[static_cast<std::size_t>(optind - 1)]);
        if (got == kHelpLetter) {
            (void)SetHelp(options, {});  // it has nothing to refuse
        } else if (const COutcome wrong = EntryOf(got).set(options, optarg == nullptr ? "" : optarg)) {
            return Wrong(Dashed(EntryOf(got)) + " " + *wrong);
        }
    }
    if (options.action != CRenderOptions::EAction::Draw) return options;
    const auto first = static_cast<std::size_t>(optind);
    return WithFiles(std::move(options), std::span(argv).subspan(first, words.size() - first));
}

std::string RenderHelp() {
    std::string text =
        "Usage: orbivue-render [OPTION]... INPUT [OUTPUT.png]\n"
        "       orbivue-render --batch --into FOLDER [OPTION]... [INPUT]...\n"
        "Draws a 3DS, OBJ or zipped model into a PNG picture; no display is needed.\n"
        "Without OUTPUT the picture goes to the current folder, under INPUT's name with\n"
        "the extension png; with --stats and no OUTPUT no picture is written.\n\n";
    for (const COptionEntry& entry : kOptions) {
        std::string left = "  " + Dashed(entry);
        if (!entry.value.empty()) left += " " + std::string(entry.value);
        left.resize(std::max<std::size_t>(24, left.size() + 1), ' ');
        text += left + std::string(entry.help) + "\n";
    }
    return text +
           "\nExit codes: 0 done, 1 wrong usage, 2 the model cannot be read, 3 the picture\n"
           "cannot be written, 4 there is no OpenGL to draw with.\n";
}
