// SPDX-License-Identifier: MIT
#include "programs/shared/program_output.h"

#include <cstdio>

#include "base/text/utf8_text.h"

void PrintError(std::string_view program, const std::string& message) {
    // A stranger may have named files. One call, so that lines of several processes do not mix.
    const std::string line = std::string(program) + ": " + utf8_text::Printable(message, ' ') + "\n";
    std::fputs(line.c_str(), stderr);
}

bool Print(const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}
