// SPDX-License-Identifier: MIT
#include <getopt.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <string>

#include "base/text/number_text.h"
#include "base/text/utf8_text.h"
#include "camera/CSeenOptions.h"
#include "export/pov/C3ds2Pov.h"
#include "export/pov/C3ds2PovExportFlow.h"
#include "export/pov/pov_export_format.h"
#include "model/open/load_scene.h"

namespace {

constexpr const char* kUsage =
    "orbivue-pov [OPTION VALUE...] MODEL OUTPUT.pov\n"
    "  -camera NAME  -red -green -blue 0..1  -x -y -z DEGREES  -diffuse -self 0..1\n"
    "  -textures 0|1  -radiosity 0|1  -mode NUMBER  -size WxH (of the window that a zoom box is in)\n"
    "  and -angles -turn -orbit -pivot -scale -zoom-box -zoom as orbivue-render has them\n";

/** Measures the writing, which begins when the scene is read and prepared. */
class CTimes final : public C3ds2PovExportFlow {
  public:
    void Begin(int) override { m_begin = CClock::now(); }
    void Step() override {}
    void Message(int value) override { m_triangles = value; }
    void Finished() override {
        if (m_triangles < 0) return;
        const double ms = std::chrono::duration<double, std::milli>(CClock::now() - m_begin).count();
        std::printf("%d triangles written in %.1f ms\n", m_triangles, ms);
    }

  private:
    using CClock = std::chrono::steady_clock;
    CClock::time_point m_begin;
    int m_triangles = -1;
};

using COutFormat = C3ds2Pov::COutFormat;

float Number(const std::string& text) {
    return static_cast<float>(number_text::ParseLeading(text).value_or(0));
}

struct COptions {
    COutFormat format;
    CSeenOptions seen;
    double width = 640, height = 480;  ///< of the window that a zoom box is in
};

template <float COutFormat::*kMember>
void SetNumber(COptions& options, const std::string& value) {
    options.format.*kMember = Number(value);
}
template <bool COutFormat::*kMember>
void SetFlag(COptions& options, const std::string& value) {
    options.format.*kMember = value != "0";
}

struct COption {
    const char* name;
    void (*set)(COptions&, const std::string&);
};
constexpr std::array<COption, 13> kOptions{{
    {"camera", [](COptions& options, const std::string& value) { options.format.cameraName = value; }},
    {"red", SetNumber<&COutFormat::bkRed>},
    {"green", SetNumber<&COutFormat::bkGreen>},
    {"blue", SetNumber<&COutFormat::bkBlue>},
    {"x", SetNumber<&COutFormat::angleX>},
    {"y", SetNumber<&COutFormat::angleY>},
    {"z", SetNumber<&COutFormat::angleZ>},
    {"diffuse", SetNumber<&COutFormat::diffuse>},
    {"self", SetNumber<&COutFormat::selfDiffuse>},
    {"textures", SetFlag<&COutFormat::outputTextures>},
    {"radiosity", SetFlag<&COutFormat::radiosity>},
    {"mode",
     [](COptions& options, const std::string& value) {
         options.format.mode = static_cast<std::int32_t>(Number(value));
     }},
    {"size",
     [](COptions& options, const std::string& value) {
         options.width = static_cast<double>(Number(value));
         const std::size_t x = value.find('x');
         options.height = x == std::string::npos ? 0 : static_cast<double>(Number(value.substr(x + 1)));
     }},
}};
constexpr std::size_t kSeen = CSeenOptions::kNames.size();

/** Reads the options; false when one is not known or lacks its value, or cannot be what it is, which is then
 * told. */
bool Parse(int argc, char** argv, COptions& options) {
    std::array<option, kOptions.size() + kSeen + 1> known{};  // the last one, all zero, is the end
    for (std::size_t i = 0; i < kOptions.size(); ++i)
        known[i] = {kOptions[i].name, required_argument, nullptr, static_cast<int>(i)};
    for (std::size_t i = 0; i < kSeen; ++i) {
        const std::size_t at = kOptions.size() + i;
        known[at] = {CSeenOptions::kNames[i], required_argument, nullptr, static_cast<int>(at)};
    }
    for (int got = 0; (got = getopt_long_only(argc, argv, "", known.data(), nullptr)) != -1;) {
        if (got == '?') return false;
        const auto number = static_cast<std::size_t>(got);
        if (number < kOptions.size()) {
            kOptions[number].set(options, optarg);
        } else if (const auto wrong = options.seen.Set(known[number].name, optarg)) {
            std::fprintf(stderr, "orbivue-pov: -%s %s\n", known[number].name, wrong->c_str());
            return false;
        }
    }
    return true;
}

CStatus Export(const COptions& options, const std::string& input, const std::string& output) {
    const CResult<CLoadedScene> loaded = LoadScene(input);
    if (!loaded) return loaded.Error();
    const CPreparedScene& scene = loaded.Value().prepared;
    CSeenView seen = pov_export_format::SeenViewOf(scene, options.format);
    seen.camera.SetViewSize(options.width, options.height);
    options.seen.Apply(seen);
    CTimes times;
    return C3ds2Pov::TryExport({scene, loaded.Value().scene.Textures(), seen}, output, options.format,
                               &times);
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
    std::fprintf(stderr, "orbivue-pov: %s\n", utf8_text::Printable(status.Error().Text(), ' ').c_str());
    return 2;
}
