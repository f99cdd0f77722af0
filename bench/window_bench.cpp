// SPDX-License-Identifier: MIT
// orbivue_window_bench open FILE | step FOLDER | memory FOLDER...: the program's own frame, measured from
// inside, as JSON. Needs a display; scripts/bench/window gives it one.
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/stopwatch.h>
#include <wx/uiaction.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "base/process_memory.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "files/file_util_ex.h"
#include "frame/command_ids.h"
#include "frame/ui/CAViewerFrame.h"
#include "session/CSession.h"
#include "view/ui/CViewer3DSWindowHandler.h"

namespace {

/** The frame, shown and painted, with a count of its paints. */
class CBench {
  public:
    CBench() : m_frame(new CAViewerFrame("Orbivue")) {
        m_frame->Show();
        wxWindow* canvas = m_frame->View().GetCanvas()->GetWindow();
        canvas->Bind(wxEVT_PAINT, [this, canvas](wxPaintEvent& event) {
            if (m_painting) return event.Skip();
            // Once more, for the canvas's own handler: so it is known when the paint ends.
            m_painting = true;
            canvas->ProcessWindowEvent(event);
            m_painting = false;
            ++m_paints;
            if (m_pictureMs < 0 && m_frame->View().GetPath() == m_expected) m_pictureMs = m_watch.Time();
        });
        // The simulated hand sleeps 20 ms for each key; the clock runs from when the program hears of it.
        canvas->Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) {
            m_watch.Start();
            event.Skip();
        });
        WaitFor([this] { return m_paints > 1 && m_frame->IsActive(); });
        canvas->SetFocus();
        Rest();
    }
    CBench(const CBench&) = delete;
    CBench& operator=(const CBench&) = delete;
    ~CBench() {
        m_frame->Close(true);
        wxTheApp->ProcessIdle();
    }
    [[nodiscard]] CAViewerFrame& Frame() { return *m_frame; }
    [[nodiscard]] bool Open(const std::wstring& path) {
        return m_frame->Session().Open(COpenRequest::OfFile(path)) != EOpened::Failed;
    }

    static void WaitFor(const std::function<bool()>& condition) {
        while (!condition()) {
            wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);
            wxMicroSleep(300);
        }
    }
    /** Until the picture that is due has been painted. */
    void WaitForPaint() {
        const int before = m_paints;
        WaitFor([&] { return m_paints > before; });
    }
    /** Starts the clock that WaitForPicture reads when this model has been painted. */
    void ExpectPictureOf(const std::wstring& path) {
        m_expected = path;
        m_pictureMs = -1;
        m_watch.Start();
    }
    long WaitForPicture() {
        WaitFor([this] { return m_pictureMs >= 0; });
        return m_pictureMs;
    }
    static void Rest() {
        const wxStopWatch watch;
        WaitFor([&] { return watch.Time() > 300; });
    }

  private:
    CAViewerFrame* m_frame;
    int m_paints = 0;
    bool m_painting = false;
    std::wstring m_expected;
    wxStopWatch m_watch;
    long m_pictureMs = 0;
};

double ResidentMb() {
    std::ifstream file("/proc/self/statm");
    double size = 0, resident = 0;
    file >> size >> resident;
    return resident * 4096 / 1e6;
}

std::vector<std::wstring> ModelsBelow(const std::string& folder) {
    std::vector<std::wstring> models;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::string ending = entry.path().extension().string();
        std::transform(ending.begin(), ending.end(), ending.begin(),
                       [](char c) { return static_cast<char>(c | 0x20); });
        if (ending == ".3ds") models.push_back(file_util_ex::ConvertFromUTF8W(entry.path().string()));
    }
    std::sort(models.begin(), models.end());
    return models;
}

/** One opening: how long the call took, the longest time in which no window could repaint, and
 * until the picture. */
int MeasureOpening(CBench& bench, const std::string& path) {
    const std::wstring wide = file_util_ex::ConvertFromUTF8W(path);
    wxStopWatch watch, sinceTick;
    bench.ExpectPictureOf(wide);
    long longestGap = 0;
    bench.Frame().View().SetProgressListener([&](const CJobProgress&, long) {
        longestGap = std::max(longestGap, sinceTick.Time());
        sinceTick.Start();
    });
    const bool opened = bench.Open(wide);
    longestGap = std::max(longestGap, sinceTick.Time());
    const long open = watch.Time();
    const long picture = bench.WaitForPicture();
    std::printf("{\"opened\": %s, \"open_ms\": %ld, \"longest_gap_ms\": %ld, \"picture_ms\": %ld}\n",
                opened ? "true" : "false", open, longestGap, picture);
    return opened ? 0 : 1;
}

/** Steps through a folder by key press; the time from the press to the picture, for each file the
 * second time round. */
int MeasureSteps(CBench& bench, const std::string& folder) {
    const std::vector<std::wstring> models = ModelsBelow(folder);
    if (models.size() < 2 || !bench.Open(models.front())) return 1;
    bench.WaitForPaint();
    wxUIActionSimulator hand;
    std::vector<long> times;
    for (std::size_t i = 1; i <= 2 * models.size(); ++i) {
        // A scene that plays keeps a software renderer busy; what counts is the answer of a window at rest.
        if (bench.Frame().StateOfCommand(kCmdPlayAnimation).checked)
            bench.Frame().RunCommand(kCmdPlayAnimation);
        CBench::Rest();
        const std::wstring& next = models[i % models.size()];
        bench.ExpectPictureOf(next);
        hand.Char(WXK_SPACE);
        const long pictureMs = bench.WaitForPicture();
        if (i > models.size()) times.push_back(pictureMs);
    }
    std::sort(times.begin(), times.end());
    std::printf("{\"steps\": %zu, \"median_ms\": %ld, \"slowest_ms\": %ld}\n", times.size(),
                times[times.size() / 2], times.back());
    return 0;
}

/** Opens 200 models one after the other, closes the last, twice; the memory after each round. */
int MeasureMemory(CBench& bench, const std::vector<std::string>& folders) {
    std::vector<std::wstring> models;
    for (const std::string& folder : folders) {
        const std::vector<std::wstring> more = ModelsBelow(folder);
        models.insert(models.end(), more.begin(), more.end());
    }
    models.resize(std::min<std::size_t>(models.size(), 200));
    const double before = ResidentMb();
    std::printf("{\"models\": %zu, \"before_mb\": %.1f", models.size(), before);
    for (int round = 1; round <= 3; ++round) {
        for (const std::wstring& model : models) {
            (void)bench.Open(model);
            bench.WaitForPaint();
        }
        bench.Frame().View().CloseModel();
        CBench::Rest();
        std::printf(", \"after_%d_mb\": %.1f", round, ResidentMb());
    }
    std::printf("}\n");
    return 0;
}

int Run(int argc, char** argv) {
    const std::string what = argc > 2 ? argv[1] : "";
    CBench bench;
    if (what == "open") return MeasureOpening(bench, argv[2]);
    if (what == "step") return MeasureSteps(bench, argv[2]);
    if (what == "memory") return MeasureMemory(bench, {argv + 2, argv + argc});
    std::fprintf(stderr, "usage: orbivue_window_bench open FILE | step FOLDER | memory FOLDER...\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    process_memory::KeepFreedBlocks();
    int toolkitArguments = 1;
    wxApp::SetInstance(new wxApp);
    if (!wxEntryStart(toolkitArguments, argv)) return 1;
    wxInitAllImageHandlers();
    wxEventLoop loop;
    int result = 0;
    {
        const wxEventLoopActivator active(&loop);
        result = Run(argc, argv);
    }
    wxEntryCleanup();
    return result;
}
