// SPDX-License-Identifier: MIT
#include "programs/orbivue_convert/CConvertOptions.h"

#include <array>
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "programs/shared/option_table.h"
#include "programs/shared/option_values.h"

namespace {

using option_table::COutcome;
using option_table::Wrong;
using enum EOutputKind;

constexpr unsigned Bit(EOutputKind kind) {
    return 1U << static_cast<unsigned>(kind);
}
constexpr unsigned kPictures = Bit(Png) | Bit(Jpeg);
constexpr unsigned kSeen = kPictures | Bit(Zip) | Bit(Html) | Bit(Pov);

template <bool CConvertOptions::*member, bool value = true>
COutcome Set(CConvertOptions& options, std::string_view) {
    options.*member = value;
    return {};
}
template <CConvertOptions::ETelling telling>
COutcome Tell(CConvertOptions& options, std::string_view) {
    options.telling = telling;
    return {};
}
template <CConvertOptions::EAction action>
COutcome Act(CConvertOptions& options, std::string_view) {
    options.action = action;
    return {};
}
COutcome SetFolder(CConvertOptions& options, std::string_view value) {
    if (value.empty()) return lng::TextUtf8("needs a folder");
    options.folder = value;
    return {};
}
COutcome SetEnding(CConvertOptions& options, std::string_view value) {
    if (value.starts_with('.')) value.remove_prefix(1);
    if (!KindOfEnding(value)) return lng::TextUtf8("needs one of %s", {KnownEndings()});
    options.ending = value;
    return {};
}
COutcome SetTextureSide(CConvertOptions& options, std::string_view value) {
    const auto side = option_values::Number<int>(value);
    if (!side || *side < 1) return lng::TextUtf8("needs a number of pixels from 1 on");
    options.textureSide = *side;
    return {};
}
COutcome SetLanguage(CConvertOptions& options, std::string_view value) {
    if (value.empty()) return lng::TextUtf8("needs a code such as de");
    options.language = value;
    return {};
}
COutcome SetScriptFile(CConvertOptions& options, std::string_view value) {
    if (value.empty()) return lng::TextUtf8("needs a file");
    options.scriptFile = value;
    return {};
}

using Options = CConvertOptions;

constexpr std::array<option_table::CEntry<Options>, 18> kOwnOptions{{
    {"to", "ENDING", SetEnding, lng::Mark("convert all INs to files of this kind, named as they are")},
    {"folder", "DIR", SetFolder,
     lng::Mark("where those go; it is made where it is missing (beside each IN)")},
    {"force", "", Set<&Options::force>,
     lng::Mark("replace files there; an OUT that is named is replaced anyway")},
    {"no-textures", "", Set<&Options::withTextures, false>, lng::Mark("colours without pictures")},
    {"compress", "", Set<&Options::compress>,
     lng::Mark("glb: smaller, for programs that know EXT_meshopt_compression")},
    {"texture-side", "N", SetTextureSide,
     lng::Mark("glb: larger pictures are halved until no side has more pixels")},
    {"double-sided", "", Set<&Options::doubleSided>,
     lng::Mark("glb, html: all surfaces are seen from both sides")},
    {"no-cameras-bar", "", Set<&Options::camerasBar, false>, lng::Mark("html: no buttons for the cameras")},
    {"readable", "", Set<&Options::minify, false>,
     lng::Mark("html: the viewer's script as people can read it")},
    {"gzip", "", Set<&Options::gzip>, lng::Mark("html: a packed copy beside the page, for servers")},
    {"split", "", Set<&Options::combine, false>,
     lng::Mark("html: script and scene beside the page, for servers")},
    {"download-link", "", Set<&Options::downloadLink>,
     lng::Mark("html: an archive of the model beside the page, with a link")},
    {"language", "CODE", SetLanguage, lng::Mark("html: what the page says is in this language (en)")},
    {"javascript", "FILE", SetScriptFile, lng::Mark("html: a script of yours that the page runs")},
    {"quiet", "", Tell<Options::ETelling::Errors>, lng::Mark("tell errors only")},
    {"verbose", "", Tell<Options::ETelling::All>,
     lng::Mark("tell each file that is written, and what a model lacks")},
    {"help", "", Act<Options::EAction::Help>, lng::Mark("print this help")},
    {"version", "", Act<Options::EAction::Version>, lng::Mark("print the version")},
}};
constexpr auto kOptions = option_table::Joined(option_values::kSeenOptions<Options>, kOwnOptions);

/** Options that mean something for some kinds of output only. */
constexpr std::array<std::pair<std::string_view, unsigned>, 24> kOnlyFor{{
    {"camera", kSeen},
    {"frame", kSeen},
    {"background", kSeen},
    {"angles", kSeen},
    {"turn", kSeen},
    {"orbit", kSeen},
    {"pivot", kSeen},
    {"scale", kSeen},
    {"pan", kSeen},
    {"zoom-box", kSeen},
    {"zoom", kSeen},
    {"wire", kSeen},
    {"size", kSeen},
    {"no-textures", kPictures | Bit(Glb) | Bit(Pov) | Bit(Model3ds)},
    {"compress", Bit(Glb)},
    {"texture-side", Bit(Glb)},
    {"double-sided", Bit(Glb) | Bit(Html)},
    {"no-cameras-bar", Bit(Html)},
    {"readable", Bit(Html)},
    {"gzip", Bit(Html)},
    {"split", Bit(Html)},
    {"download-link", Bit(Html)},
    {"language", Bit(Html)},
    {"javascript", Bit(Html)},
}};

CResult<CConvertOptions> WithOutput(CConvertOptions options, std::vector<std::string> files) {
    if (files.size() < 2)
        return Wrong(files.empty() ? lng::TextUtf8("no input file given")
                                   : lng::TextUtf8("no output file given; or use --to"));
    if (files.size() > 2) return Wrong(lng::TextUtf8("too many files given; many are converted with --to"));
    if (!options.folder.empty()) return Wrong(lng::TextUtf8("--folder needs --to ENDING"));
    const auto kind = KindOfEnding(file_util_ex::GetFileExt(files[1]));
    if (!kind)
        return Wrong(lng::TextUtf8("the name of the output file must end in one of %s", {KnownEndings()}));
    options.kind = *kind;
    options.output = files[1];
    options.inputs = {files[0]};
    return options;
}

CResult<CConvertOptions> WithFiles(CConvertOptions options, std::vector<std::string> files) {
    for (const std::string& file : files)
        if (file.empty()) return Wrong(lng::TextUtf8("the name of a file is empty"));
    if (options.ending.empty()) return WithOutput(std::move(options), std::move(files));
    if (files.empty()) return Wrong(lng::TextUtf8("no input file given"));
    options.kind = *KindOfEnding(options.ending);
    options.inputs = std::move(files);
    return options;
}

}  // namespace

CResult<CConvertOptions> ParseConvertOptions(std::span<const std::string> arguments) {
    CConvertOptions options;
    std::vector<std::string> given;
    CResult<std::vector<std::string>> files = option_table::Walk(
        option_table::NamesOf(kOptions), arguments, [&](std::size_t option, std::string_view value) {
            given.emplace_back(kOptions[option].name);
            return kOptions[option].set(options, value);
        });
    if (!files) return files.Error();
    if (options.action != CConvertOptions::EAction::Convert) return options;
    CResult<CConvertOptions> parsed = WithFiles(std::move(options), std::move(files).Value());
    if (!parsed) return parsed;
    for (const auto& [name, kinds] : kOnlyFor)
        if ((kinds & Bit(parsed.Value().kind)) == 0 && std::ranges::find(given, name) != given.end())
            return Wrong(
                lng::TextUtf8("%s means nothing for this kind of output", {"--" + std::string(name)}));
    return parsed;
}

std::string ConvertHelp() {
    return option_table::Usage({"orbivue-convert [OPTION]... IN OUT",
                                "orbivue-convert [OPTION]... --to ENDING [--folder DIR] IN..."}) +
           lng::TextUtf8(
               "Converts 3DS, OBJ and zipped models and scene scripts, as the name of OUT ends: glb\n"
               "(glTF), html (a web page), pov (POV-Ray), 3ds, zip, png or jpg. No display is needed.") +
           "\n\n" + option_table::Help(option_table::NamesOf(kOptions)) + "\n" +
           lng::TextUtf8("Exit codes: 0 done, 1 some files were not converted, 2 wrong usage.") + "\n";
}
