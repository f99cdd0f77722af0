// SPDX-License-Identifier: MIT
// Settings files: any text parses or is refused, what is parsed survives being saved, and any value survives
// a set.
#include <cstdint>
#include <cstdlib>

#include "base/text/number_text.h"
#include "settings/CIniFile.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void CheckSet(std::string_view value) {
    CIniFile ini;
    if (!ini.Set("Section", "key", value)) return;
    Require(ini.Set("Section", "after", "kept"));
    CIniFile read;
    Require(read.Parse(ini.Text()).HasValue());
    Require(read.Get("Section", "key") == std::string(value));
    Require(read.Get("Section", "after") == "kept");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    CheckSet(text);
    (void)number_text::ParseLeading(text);
    (void)number_text::ParseLeadingInt(text);
    CIniFile ini;
    if (!ini.Parse(text)) return 0;
    CIniFile again;
    Require(again.Parse(ini.Text()).HasValue());
    for (const std::string& section : ini.Sections()) {
        Require(ini.Get(section, "key") == again.Get(section, "key"));
    }
    return 0;
}
