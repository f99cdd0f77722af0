// SPDX-License-Identifier: MIT
#include "widgets/threads/ui/wxGUIThread.h"

#include "widgets/ui/run_job.h"

void wxGUIThread::StopPainting() {
    StartKill();
    RunJob([this](CJobProgress&) { Wait(); });
}
