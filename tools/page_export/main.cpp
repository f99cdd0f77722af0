// SPDX-License-Identifier: MIT
#include <getopt.h>
#include <wx/init.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "base/text/lng.h"
#include "base/text/number_text.h"
#include "base/text/utf8_text.h"
#include "camera/CSeenOptions.h"
#include "export/webgl/C3ds2WebGL.h"
#include "export/webgl/download_archive.h"
#include "export/webgl/web_export_format.h"
#include "files/file_util_ex.h"
#include "model/open/load_scene.h"
#include "model/save/write_scene.h"
#include "model/textures/CLib3dsMatUtil.h"
#include "picture/decode/image_codec.h"
#include "settings/choose_language.h"

namespace {

constexpr const char* kUsage =
    "orbivue-page [OPTION VALUE...] MODEL OUTPUT.html\n"
    "  -minify -combine -bar (1)  -gzip -download -double -wire (0)  0|1\n"
    "  -script FILE  -name FILE (that holds the model's file name)  -lang CODE  -camera NAME  -red -green "
    "-blue 0..1  -picture FILE\n"
    "  -size WxH  and -angles -turn -orbit -pivot -scale -zoom-box -zoom as orbivue-render has them\n";

struct COptions {
    COptions() {
        format.minify = format.combine = format.camerasBar = true;
        format.version = ORBIVUE_VERSION;
    }
    C3ds2WebGL::COutFormat format;
    CPageTexts texts = CPageTexts::English();
    CSeenOptions seen;
    std::string picture;
    double width = 800, height = 600;
};

using COutFormat = C3ds2WebGL::COutFormat;

template <bool COutFormat::*kMember>
void SetFlag(COptions& options, const std::string& value) {
    options.format.*kMember = value != "0";
}
template <float COutFormat::*kMember>
void SetNumber(COptions& options, const std::string& value) {
    options.format.*kMember = static_cast<float>(number_text::ParseLeading(value).value_or(0));
}

/** A text is in a file, as it may be any bytes. */
template <std::string COutFormat::*kMember>
void SetText(COptions& options, const std::string& path) {
    const auto bytes = file_util_ex::ReadWholeFile(path);
    if (bytes)
        options.format.*kMember = {reinterpret_cast<const char*>(bytes.Value().data()), bytes.Value().size()};
}

void SetLanguage(COptions& options, const std::string& code) {
    static const wxInitializer toolkit;  // it looks texts up
    lng_util_internal::SetDomain(lng::Domain(), "viewer");
    lng::SetLanguage(file_util_ex::ConvertFromUTF8W(code));
    options.texts = CPageTexts::InProgramLanguage();
}

void SetSize(COptions& options, const std::string& value) {
    const std::size_t x = std::min(value.find('x'), value.size());
    options.width = number_text::ParseLeading(value).value_or(0);
    options.height = number_text::ParseLeading(value.substr(std::min(x + 1, value.size()))).value_or(0);
}

struct COption {
    const char* name;
    void (*set)(COptions&, const std::string&);
};
constexpr std::array kOptions{
    COption{"minify", SetFlag<&COutFormat::minify>},
    COption{"combine", SetFlag<&COutFormat::combine>},
    COption{"gzip", SetFlag<&COutFormat::gzip>},
    COption{"bar", SetFlag<&COutFormat::camerasBar>},
    COption{"download", SetFlag<&COutFormat::downloadLink>},
    COption{"double", SetFlag<&COutFormat::doubleSided>},
    COption{"wire", SetFlag<&COutFormat::displayFlag>},
    COption{"script", SetText<&COutFormat::javaScript>},
    COption{"name", SetText<&COutFormat::modelFileName>},
    COption{"lang", SetLanguage},
    COption{"camera", [](COptions& options, const std::string& value) { options.format.cameraName = value; }},
    COption{"red", SetNumber<&COutFormat::bkRed>},
    COption{"green", SetNumber<&COutFormat::bkGreen>},
    COption{"blue", SetNumber<&COutFormat::bkBlue>},
    COption{"picture", [](COptions& options, const std::string& value) { options.picture = value; }},
    COption{"size", SetSize},
};
constexpr std::size_t kSeen = CSeenOptions::kNames.size();

/** Reads the options; false when one is not known, lacks its value, or cannot be what it is. */
bool Parse(int argc, char** argv, COptions& options) {
    std::array<option, kOptions.size() + kSeen + 1> known{};  // the last one, all zero, is the end
    for (std::size_t i = 0; i < kOptions.size() + kSeen; ++i) {
        const bool isOurs = i < kOptions.size();
        known[i] = {isOurs ? kOptions[i].name : CSeenOptions::kNames[i - kOptions.size()], required_argument,
                    nullptr, static_cast<int>(i)};
    }
    for (int got = 0; (got = getopt_long_only(argc, argv, "", known.data(), nullptr)) != -1;) {
        if (got == '?') return false;
        const auto number = static_cast<std::size_t>(got);
        if (number < kOptions.size()) {
            kOptions[number].set(options, optarg);
        } else if (options.seen.Set(known[number].name, optarg)) {
            return false;
        }
    }
    return true;
}

CStatus Export(COptions& options, const std::string& input, const std::string& output) {
    CResult<CLoadedScene> loaded = LoadScene(input);
    if (!loaded) return loaded.Error();
    const CPreparedScene& prepared = loaded.Value().prepared;
    CScene& scene = loaded.Value().scene;
    if (options.format.modelFileName.empty()) options.format.modelFileName = file_util_ex::GetFileName(input);
    CSeenView seen = web_export_format::SeenViewOf(prepared, options.format);
    seen.camera.SetViewSize(options.width, options.height);
    options.seen.Apply(seen);
    if (!options.picture.empty()) {
        auto image = image_codec::ReadImageFile(options.picture);
        if (!image) return image.Error();
        seen.backgroundImage = std::make_shared<const CImage>(std::move(image.Value().image));
    }
    const CWebGLSource source{prepared, scene.Textures(), seen, options.texts, &scene};
    if (CStatus status = C3ds2WebGL::TryExport(source, output, options.format); !status) return status;
    if (!options.format.downloadLink) return CDone{};
    const CTexturesOfScene known(scene.File(), scene.Textures());
    return download_archive::Make(
        output, options.format.modelFileName, prepared,
        {scene.File(), [&](std::string_view path) { return WriteScene(scene, path); }, {}});
}

}  // namespace

int main(int argc, char** argv) {
    COptions options;
    if (!Parse(argc, argv, options) || argc != optind + 2) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    const CStatus status = Export(options, argv[optind], argv[optind + 1]);
    if (status) return 0;
    std::fprintf(stderr, "orbivue-page: %s\n", utf8_text::Printable(status.Error().Text(), ' ').c_str());
    return 2;
}
