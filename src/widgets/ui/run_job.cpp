// SPDX-License-Identifier: MIT
#include "widgets/ui/run_job.h"

#include <wx/evtloop.h>

#include <thread>

void RunJob(const CJob::CWork& work, const std::function<void(CJobProgress&)>& tick) {
    constexpr std::chrono::milliseconds kBetweenRepaints(10);
    CJob job(work);
    while (!job.HasEndedWithin(kBetweenRepaints)) {
        if (tick) tick(job.Progress());
        wxEventLoopBase* loop = wxEventLoopBase::GetActive();
        if (loop && !loop->IsYielding()) loop->YieldFor(wxEVT_CATEGORY_UI);
    }
    job.Finish();
}

void RepaintWindows() {
    // The time that the display server needs to report uncovered areas.
    constexpr std::chrono::milliseconds kForNews(80);
    RunJob([kForNews](CJobProgress&) { std::this_thread::sleep_for(kForNews); });
}
