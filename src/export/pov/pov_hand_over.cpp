// SPDX-License-Identifier: MIT
#include "export/pov/pov_hand_over.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "base/text/lng.h"
#include "files/file_util_ex.h"

namespace {

constexpr wchar_t kPovRayDownload[] = L"https://www.povray.org/download/";

bool CanStart(std::string_view program) {
    const char* path = std::getenv("PATH");
    std::string_view folders = path ? path : "";
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(':'));
        const std::string file = file_util_ex::MakePath(folder.empty() ? "." : folder, program);
        if (file_util_ex::DoesFileExist(file) && ::access(file.c_str(), X_OK) == 0) return true;
        folders.remove_prefix(std::min(folders.size(), folder.size() + 1));
    }
    return false;
}

}  // namespace

namespace pov_hand_over {

CPrograms WhatIsThere() {
    return {.povRay = CanStart("povray"), .opener = CanStart("xdg-open")};
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
