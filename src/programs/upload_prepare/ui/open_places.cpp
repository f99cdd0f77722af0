// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/ui/open_places.h"

#include "base/text/lng.h"
#include "files/std_file_paths.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/run_job.h"

void OpenPlaces(const std::vector<std::string>& places) {
    CStatus opened = CDone{};
    RunJob([&](CJobProgress&) {
        for (const std::string& place : places)
            if (CStatus now = std_file_paths::LaunchBrowser(place); !now) opened = now;
    });
    if (!opened) CUserPrompt::Instance().ShowMessage(lng::Text(opened.Error()));
}
