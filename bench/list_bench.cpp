// SPDX-License-Identifier: MIT
// orbivue_list_bench FOLDER: the model list of the program's own frame while a folder is opened and scrolled through, as
// JSON. Times of the window's thread: by the clock, and of the processor. Needs a display; tests/run_under_xvfb.sh gives it
// one.
#include <time.h>
#include <wx/app.h>
#include <wx/evtloop.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <vector>

#include "base/CStopwatch.h"
#include "engine/CGLCanvasI.h"
#include "files/file_util_ex.h"
#include "frame/command_ids.h"
#include "frame/model_list/ui/CModelListControl.h"
#include "frame/model_list/ui/CModelsLstToolBar.h"
#include "frame/ui/CAViewerFrame.h"
#include "run_in_toolkit.h"
#include "session/CSession.h"
#include "view/ui/CViewer3DSWindowHandler.h"

namespace {

double ProcessorMs() {
    timespec now{};
    (void)clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double ResidentMb() {
    std::ifstream file("/proc/self/statm");
    double size = 0, resident = 0;
    file >> size >> resident;
    return resident * 4096 / 1e6;
}

void Serve() {
    wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);
    wxTheApp->ProcessIdle();
}

void ServeFor(double ms) {
    for (const CStopwatch watch; watch.Ms() < ms; wxMicroSleep(500)) Serve();
}

struct CTimes {
    std::vector<double> clock, processor;

    void Print(const char* name) {
        std::ranges::sort(clock);
        std::ranges::sort(processor);
        std::printf(
            ", \"%s\": {\"count\": %zu, \"median_ms\": %.2f, \"worst_ms\": %.2f, \"median_processor_ms\": "
            "%.2f, "
            "\"worst_processor_ms\": %.2f}",
            name, clock.size(), clock[clock.size() / 2], clock.back(), processor[processor.size() / 2],
            processor.back());
    }
};

/** Each frame: the strip scrolls, is painted, and everything that came meanwhile is dealt with. */
CTimes Scroll(CModelStrip& strip, int frames, long pixels, double pauseMs) {
    CTimes times;
    for (int i = 0; i < frames; ++i) {
        const CStopwatch watch;
        const double before = ProcessorMs();
        strip.ScrollBy(pixels);
        strip.Update();
        Serve();
        times.clock.push_back(watch.Ms());
        times.processor.push_back(ProcessorMs() - before);
        ServeFor(pauseMs);
    }
    return times;
}

int Run(const std::wstring& folder) {
    auto* frame = new CAViewerFrame("Orbivue");
    frame->Show();
    while (!frame->View().GetCanvas()->IsReady()) Serve();
    frame->RunCommand(kCmdShowModelList);
    ServeFor(500);
    CModelStrip& strip = frame->ModelList().Bar().Strip();
    const CModelList& list = frame->ModelList().Manager().List();
    const CStopwatch watch;
    const double before = ProcessorMs();
    if (frame->Session().OpenFileOrFolder(folder) == EOpened::Failed) return 1;
    strip.Update();
    std::printf("{\"models\": %zu, \"open_and_list_ms\": %.1f, \"open_and_list_processor_ms\": %.1f",
                list.Size(), watch.Ms(), ProcessorMs() - before);
    while (!frame->ModelList().HasPictures() && watch.Ms() < 60'000) ServeFor(5);
    std::printf(", \"first_pictures_ms\": %.0f", watch.Ms());
    Scroll(strip, 300, 37, 10).Print("slow");
    Scroll(strip, 300, 700, 10).Print("fast");
    std::printf(", \"resident_mb\": %.1f}\n", ResidentMb());
    frame->Close(true);
    wxTheApp->ProcessIdle();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: orbivue_list_bench FOLDER\n");
        return 2;
    }
    return RunInToolkit(argv, [&] { return Run(file_util_ex::PathFromBytes(argv[1])); });
}
