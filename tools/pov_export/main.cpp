// SPDX-License-Identifier: MIT
#include <getopt.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <string>

#include "base/text/number_text.h"
#include "export/pov/C3ds2Pov.h"
#include "export/pov/C3ds2PovExportFlow.h"

namespace {

constexpr const char* kUsage =
    "orbivue-pov [OPTION VALUE...] MODEL OUTPUT.pov\n"
    "  -camera NAME  -red -green -blue 0..1  -x -y -z DEGREES  -diffuse -self 0..1\n"
    "  -textures 0|1  -radiosity 0|1  -mode NUMBER\n";

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

template <float COutFormat::*kMember>
void SetNumber(COutFormat& format, const std::string& value) {
    format.*kMember = Number(value);
}
template <bool COutFormat::*kMember>
void SetFlag(COutFormat& format, const std::string& value) {
    format.*kMember = value != "0";
}

struct COption {
    const char* name;
    void (*set)(COutFormat&, const std::string&);
};
constexpr std::array<COption, 12> kOptions{{
    {"camera", [](COutFormat& format, const std::string& value) { format.cameraName = value; }},
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
    {"mode", [](COutFormat& format,
                const std::string& value) { format.mode = static_cast<std::int32_t>(Number(value)); }},
}};

/** Reads the options; false when one is not known or lacks its value, which is then told. */
bool Parse(int argc, char** argv, COutFormat& format) {
    std::array<option, kOptions.size() + 1> known{};  // the last one, all zero, is the end
    for (std::size_t i = 0; i < kOptions.size(); ++i)
        known[i] = {kOptions[i].name, required_argument, nullptr, static_cast<int>(i)};
    for (int got = 0; (got = getopt_long_only(argc, argv, "", known.data(), nullptr)) != -1;) {
        if (got == '?') return false;
        kOptions[static_cast<std::size_t>(got)].set(format, optarg);
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    COutFormat format;
    if (!Parse(argc, argv, format) || argc != optind + 2) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    CTimes times;
    const CStatus status = C3ds2Pov::TryExport(std::string(argv[optind]), argv[optind + 1], format, &times);
    if (status) return 0;
    std::fprintf(stderr, "orbivue-pov: %s\n", status.Error().Text().c_str());
    return 2;
}
