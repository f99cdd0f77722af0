// SPDX-License-Identifier: MIT
#include "view/ui/run_beside_windows.h"

#include <wx/evtloop.h>

#include <chrono>
#include <future>
#include <system_error>
#include <thread>

namespace {

/** Where no further thread can be had the work is done here, and windows wait. */
std::future<void> Start(const std::function<void()>& work) {
    try {
        return std::async(std::launch::async, work);
    } catch (const std::system_error&) {
        std::packaged_task<void()> task(work);
        task();
        return task.get_future();
    }
}

}  // namespace

void RunBesideWindows(const std::function<void()>& work, const std::function<void()>& tick) {
    constexpr std::chrono::milliseconds kBetweenRepaints(30);
    std::future<void> done = Start(work);
    while (done.wait_for(kBetweenRepaints) != std::future_status::ready) {
        if (tick) tick();
        wxEventLoopBase* loop = wxEventLoopBase::GetActive();
        if (loop && !loop->IsYielding()) loop->YieldFor(wxEVT_CATEGORY_UI);
    }
    done.get();
}

void RepaintWindows() {
    // As long as the display server needs to tell what was uncovered.
    constexpr std::chrono::milliseconds kForNews(80);
    RunBesideWindows([kForNews] { std::this_thread::sleep_for(kForNews); }, {});
}
