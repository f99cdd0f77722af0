// SPDX-License-Identifier: MIT
#include <string>

#include "base/text/file_uri.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "frame/dialogs/ui/frame_dialogs.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/run_job.h"

namespace {

CStatus OpenInBrowser(const std::string& address) {
    CStatus opened = CDone{};
    const CBusyCursor cursor;
    RunJob([&](CJobProgress&) { opened = std_file_paths::LaunchBrowser(address); });
    return opened;
}

}  // namespace

void VisitWebsite() {
    (void)OpenInBrowser(ORBIVUE_WEBSITE);  // the user sees that no browser came
}

void OpenManual(std::string_view page) {
    const std::string path = std_file_paths::GetDataPath("manual/" + std::string(page) + ".html");
    std::wstring problem;
    if (!file_util_ex::DoesFileExist(path))
        problem = lng::Text("This page of the manual is not installed:") + L"\n" +
                  file_util_ex::ShownText(file_util_ex::PathFromBytes(path));
    else if (const CStatus opened = OpenInBrowser(file_uri::Of(path)); !opened)
        problem = lng::Text(opened.Error());
    if (!problem.empty()) CUserPrompt::Instance().ShowMessage(problem);
}
