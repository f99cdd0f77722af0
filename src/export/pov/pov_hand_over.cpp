// SPDX-License-Identifier: MIT
#include "export/pov/pov_hand_over.h"

#include "base/text/lng.h"
#include "files/start_program.h"

namespace {

constexpr wchar_t kPovRayDownload[] = L"https://www.povray.org/download/";

}  // namespace

namespace pov_hand_over {

CPrograms WhatIsThere() {
    return {.povRay = IsProgramInstalled("povray"), .opener = IsProgramInstalled("xdg-open")};
}

std::wstring WhyNot(const CPrograms& programs) {
    if (!programs.povRay) {
        return lng::Text("Unable to find POV-RAY executable. Please download POV-RAY from the: ") +
               kPovRayDownload + L".";
    }
    if (!programs.opener) {
        return lng::Text(
            "The file cannot be opened, because the program xdg-open is missing. Please install the package "
            "xdg-utils.");
    }
    return lng::Text(
        "POV-Ray is installed, but .pov files are not associated with a program. Please choose one in the "
        "settings of your desktop.");
}

}  // namespace pov_hand_over
