// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/program_output.h"

#include <cstdio>

#include "base/text/utf8_text.h"

int Complain(const std::string& message, EExit code) {
    // A stranger may have named files.
    std::fprintf(stderr, "orbivue-render: %s\n", utf8_text::Printable(message, ' ').c_str());
    return code;
}

bool Print(const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}
