// SPDX-License-Identifier: MIT
#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

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

float Number(const std::string& text) {
    return static_cast<float>(number_text::ParseLeading(text).value_or(0));
}

bool Set(C3ds2Pov::COutFormat& format, const std::string& option, const std::string& value) {
    const std::map<std::string, float*> numbers{
        {"-red", &format.bkRed},       {"-green", &format.bkGreen},   {"-blue", &format.bkBlue},
        {"-x", &format.angleX},        {"-y", &format.angleY},        {"-z", &format.angleZ},
        {"-diffuse", &format.diffuse}, {"-self", &format.selfDiffuse}};
    if (const auto number = numbers.find(option); number != numbers.end()) {
        *number->second = Number(value);
    } else if (option == "-camera") {
        format.cameraName = value;
    } else if (option == "-textures") {
        format.outputTextures = value != "0";
    } else if (option == "-radiosity") {
        format.radiosity = value != "0";
    } else if (option == "-mode") {
        format.mode = static_cast<std::int32_t>(Number(value));
    } else {
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    C3ds2Pov::COutFormat format;
    std::size_t at = 0;
    while (at + 3 < arguments.size() && Set(format, arguments[at], arguments[at + 1])) at += 2;
    if (arguments.size() != at + 2) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    CTimes times;
    const CStatus status = C3ds2Pov::TryExport(arguments[at], arguments[at + 1], format, &times);
    if (status) return 0;
    std::fprintf(stderr, "orbivue-pov: %s\n", status.Error().Text().c_str());
    return 2;
}
