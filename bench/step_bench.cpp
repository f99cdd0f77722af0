// SPDX-License-Identifier: MIT
// orbivue_step_bench keys FOLDER | held FOLDER | folder FILE...: steps through folders in the program's own frame, measured
// from inside, as JSON. Needs a display; scripts/bench/steps gives it one.
#include <sys/resource.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/uiaction.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "base/CStopwatch.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "files/file_util_ex.h"
#include "frame/command_ids.h"
#include "frame/ui/CAViewerFrame.h"
#include "model/prepare/CPreparedScene.h"
#include "run_in_toolkit.h"
#include "session/CSession.h"
#include "session/CSessionListener.h"
#include "view/ui/CViewer3DSWindowHandler.h"

namespace {

/** The processor time of the thread of the windows, or of all threads (RUSAGE_SELF). */
double CpuMs(int who = RUSAGE_THREAD) {
    rusage used = {};
    ::getrusage(static_cast<__rusage_who_t>(who), &used);
    const auto ms = [](const timeval& time) {
        return 1e3 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_usec);
    };
    return ms(used.ru_utime) + ms(used.ru_stime);
}

/** The frame with a record of what was opened and painted. */
class CStepBench : private CSessionListener {
  public:
    CStepBench() : m_frame(new CAViewerFrame("Orbivue")) {
        m_frame->Show();
        m_frame->Session().AddListener(*this);
        wxWindow* canvas = m_frame->View().GetCanvas()->GetWindow();
        canvas->Bind(wxEVT_PAINT, [this, canvas](wxPaintEvent& event) {
            if (m_painting) return event.Skip();
            // Once more, for the canvas's own handler: so it is known when the paint ends.
            m_painting = true;
            canvas->ProcessWindowEvent(event);
            m_painting = false;
            OnPainted();
        });
        canvas->Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) {
            keyAt = Now();
            keyCpu = CpuMs();
            keyAllCpu = CpuMs(RUSAGE_SELF);
            ++keys;
            event.Skip();
        });
        WaitFor([this] { return m_paints > 1 && m_frame->IsActive(); });
        canvas->SetFocus();
        Rest(300);
    }
    CStepBench(const CStepBench&) = delete;
    CStepBench& operator=(const CStepBench&) = delete;
    ~CStepBench() override {
        m_frame->Session().RemoveListener(*this);
        m_frame->Close(true);
        wxTheApp->ProcessIdle();
    }

    [[nodiscard]] CSession& Session() { return m_frame->Session(); }
    [[nodiscard]] double Now() const { return m_clock.Ms(); }
    bool Open(const std::wstring& path) {
        const bool opened = Session().Open(COpenRequest::OfFile(path)) != EOpened::Failed;
        WaitFor([&] { return !opened || shown == path; });
        return opened;
    }
    /** Still, and with the neighbours read. */
    void Settle() {
        // A scene that plays keeps a software renderer busy; what counts is the answer of a window at rest.
        if (m_frame->StateOfCommand(kCmdPlayAnimation).checked) m_frame->RunCommand(kCmdPlayAnimation);
        Rest(100);
        WaitFor([this] { return Session().HasReadAhead(); });
    }
    [[nodiscard]] std::size_t Triangles() {
        const CPreparedScene* scene = m_frame->View().GetEngine().Prepared();
        return scene ? scene->triangleCount : 0;
    }
    void WaitFor(const std::function<bool()>& condition) {
        while (!condition()) {
            const double before = Now();
            wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);
            longestTurnMs = std::max(longestTurnMs, Now() - before);
            wxMicroSleep(200);
        }
    }
    void Rest(double ms) {
        const double until = Now() + ms;
        WaitFor([&] { return Now() > until; });
    }

    double keyAt = 0, keyCpu = 0, keyAllCpu = 0, shownAllCpu = 0, openedCpu = 0, shownCpu = 0, openedAt = 0,
           shownAt = 0;
    int keys = 0, openings = 0, pictures = 0;
    double longestTurnMs = 0;  ///< of the event loop: no window answers meanwhile
    std::wstring shown;        ///< the path whose picture was painted last

  private:
    void OnOpened(const COpenReport&) override {
        ++openings;
        openedAt = Now();
        openedCpu = CpuMs();
    }
    void OnPainted() {
        ++m_paints;
        CViewer3DSWindowHandler& view = m_frame->View();
        const std::wstring& path = view.GetPath();
        if (!view.IsPictureComplete() || path == shown || path.empty()) return;
        shown = path;
        shownAt = Now();
        shownCpu = CpuMs();
        shownAllCpu = CpuMs(RUSAGE_SELF);
        ++pictures;
    }

    CStopwatch m_clock;
    CAViewerFrame* m_frame;
    int m_paints = 0;
    bool m_painting = false;
};

double ResidentMb() {
    std::ifstream file("/proc/self/statm");
    double size = 0, resident = 0;
    file >> size >> resident;
    return resident * 4096 / 1e6;
}

/** The times from the press of a key to the call's end and to the picture, each file once, in milliseconds. */
struct CRound {
    std::vector<double> opened, shown, cpu, openedCpu, allCpu;
};

void StepRound(CStepBench& bench, const std::vector<std::wstring>& models, CRound& round) {
    constexpr std::size_t kMostTriangles = 200'000;
    wxUIActionSimulator hand;
    for (std::size_t i = 0; i < models.size(); ++i) {
        bench.Settle();
        const int before = bench.openings;
        hand.Char(WXK_SPACE);
        bench.WaitFor([&] { return bench.openings > before; });
        if (!bench.Session().Document().isOpen) continue;
        bench.WaitFor([&] { return bench.shown == bench.Session().Document().path; });
        if (bench.Triangles() > kMostTriangles) continue;
        round.opened.push_back(bench.openedAt - bench.keyAt);
        round.shown.push_back(bench.shownAt - bench.keyAt);
        round.openedCpu.push_back(bench.openedCpu - bench.keyCpu);
        round.allCpu.push_back(bench.shownAllCpu - bench.keyAllCpu);
        round.cpu.push_back(bench.shownCpu - bench.keyCpu);
    }
}

void Print(const char* name, CRound& round, const char* end) {
    std::ranges::sort(round.opened);
    std::ranges::sort(round.shown);
    std::ranges::sort(round.cpu);
    std::ranges::sort(round.allCpu);
    std::ranges::sort(round.openedCpu);
    const std::size_t count = round.shown.size();
    if (count == 0) return;
    std::printf(
        "\"%s\": {\"steps\": %zu, \"opened_ms\": %.1f, \"median_ms\": %.1f, \"of_20_19_ms\": %.1f, "
        "\"slowest_ms\": %.1f, \"opened_processor_ms\": %.1f, \"processor_ms\": %.1f, \"all_processor_ms\": "
        "%.1f}%s",
        name, count, round.opened[count / 2], round.shown[count / 2], round.shown[count * 19 / 20],
        round.shown.back(), round.openedCpu[count / 2], round.cpu[count / 2], round.allCpu[count / 2], end);
}

/** Through a folder by key, in turns without and with reading ahead. */
int MeasureKeys(CStepBench& bench, const std::wstring& folder) {
    const std::vector<std::wstring> models = folder_models::ListInside(folder);
    if (models.size() < 2) return 1;
    bench.Open(models.front());
    CRound warm, without, with;
    StepRound(bench, models, warm);
    for (int turn = 0; turn < 3; ++turn) {
        bench.Session().SetReadsAhead(false);
        StepRound(bench, models, without);
        bench.Session().SetReadsAhead(true);
        StepRound(bench, models, with);
    }
    std::printf("{");
    Print("without", without, ", ");
    Print("with", with, "}\n");
    return 0;
}

/** A key held down: 100 presses a second for three seconds, by another program. */
int MeasureHeld(CStepBench& bench, const std::wstring& folder) {
    const std::vector<std::wstring> models = folder_models::ListInside(folder);
    if (models.size() < 2) return 1;
    bench.Open(models.front());
    bench.Settle();
    bench.keys = bench.openings = bench.pictures = 0;
    bench.longestTurnMs = 0;
    std::atomic<double> releasedAt = -1;
    std::thread other([&] {
        if (std::system("xdotool key --delay 10 --repeat 300 space") == 0) releasedAt = bench.Now();
    });
    const double begin = bench.Now();
    bench.WaitFor([&] { return releasedAt >= 0; });
    other.join();
    const double heldMs = releasedAt - begin;
    const int openings = bench.openings, pictures = bench.pictures;
    const double longest = bench.longestTurnMs;
    bench.Rest(1000);
    std::printf(
        "{\"held_ms\": %.0f, \"presses\": %d, \"openings\": %d, \"pictures\": %d, \"longest_turn_ms\": %.0f, "
        "\"openings_after\": %d, \"last_picture_after_ms\": %.0f}\n",
        heldMs, bench.keys, openings, pictures, longest, bench.openings - openings,
        bench.shownAt - releasedAt);
    return 0;
}

/** Opens each file ten times in turns; the medians, and the memory when its neighbours are read. */
int MeasureFolders(CStepBench& bench, const std::vector<std::wstring>& files) {
    std::vector<std::vector<double>> times(files.size());
    for (int turn = 0; turn < 10; ++turn) {
        for (std::size_t i = 0; i < files.size(); ++i) {
            bench.Settle();
            const double before = bench.Now();
            (void)bench.Open(files[i]);
            times[i].push_back(bench.shownAt - before);
        }
    }
    std::printf("[");
    for (std::size_t i = 0; i < files.size(); ++i) {
        (void)bench.Open(files[i]);
        bench.Settle();
        std::ranges::sort(times[i]);
        std::printf("%s{\"models\": %u, \"open_ms\": %.1f, \"resident_mb\": %.0f}", i ? ", " : "",
                    bench.Session().FolderModels(), times[i][times[i].size() / 2], ResidentMb());
    }
    std::printf("]\n");
    return 0;
}

int Run(int argc, char** argv) {
    const std::string what = argc > 2 ? argv[1] : "";
    std::vector<std::wstring> paths;
    for (int i = 2; i < argc; ++i) paths.push_back(file_util_ex::PathFromBytes(argv[i]));
    CStepBench bench;
    if (what == "keys") return MeasureKeys(bench, paths[0]);
    if (what == "held") return MeasureHeld(bench, paths[0]);
    if (what == "folder") return MeasureFolders(bench, paths);
    std::fprintf(stderr, "usage: orbivue_step_bench keys FOLDER | held FOLDER | folder FILE...\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    return RunInToolkit(argv, [&] { return Run(argc, argv); });
}
