// SPDX-License-Identifier: MIT
// orbivue_window_bench open FILE | drag FILE | color FILE | play FILE | step FOLDER | memory FOLDER...: the program's own
// frame, measured from inside, as JSON. Needs a display; scripts/bench/window gives it one.
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/stopwatch.h>
#include <wx/uiaction.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "files/file_util_ex.h"
#include "frame/command_ids.h"
#include "frame/materials/ui/CMaterialCommands.h"
#include "frame/ui/CAViewerFrame.h"
#include "run_in_toolkit.h"
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
            m_gaps.push_back(m_sincePaint.Time());
            m_sincePaint.Start();
            if (!m_frame->View().IsPictureComplete()) m_interruptedMs = m_clock.Time();
            const bool isOpen = m_frame->View().GetEngine().Prepared() != nullptr;
            if (m_firstMs < 0 && isOpen) m_firstMs = m_watch.Time();
            if (m_pictureMs < 0 && m_frame->View().GetPath() == m_expected) m_pictureMs = m_watch.Time();
        });
        canvas->Bind(wxEVT_MOTION, [this](wxMouseEvent& event) {
            m_gapsThatMoved = m_gaps.size() + 1;
            event.Skip();
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
    void WaitForPaint() { WaitForPaintAfter(m_paints); }
    /** Until more than that many have been painted; not for ever, as input may have moved nothing. */
    void WaitForPaintAfter(int paints) {
        const wxStopWatch watch;
        WaitFor([&] { return m_paints > paints || watch.Time() > 5000; });
    }
    /** Starts the clock that WaitForPicture reads when this model has been painted. */
    void ExpectPictureOf(const std::wstring& path) {
        m_expected = path;
        m_pictureMs = m_firstMs = -1;
        m_watch.Start();
    }
    /** Since ExpectPictureOf, until something of the model was painted. */
    [[nodiscard]] long FirstMs() const { return m_firstMs; }
    [[nodiscard]] CViewer3DSWindowHandler& View() { return m_frame->View(); }
    [[nodiscard]] int Paints() const { return m_paints; }
    /** The times between the ends of the paints since the last call, up to the first after the mouse was moved
     * for the last time: what follows is the picture at rest. */
    [[nodiscard]] std::vector<long> TakeGaps() {
        m_gaps.resize(std::min(m_gaps.size(), std::exchange(m_gapsThatMoved, 0)));
        return std::exchange(m_gaps, {});
    }
    /** Milliseconds since the bench began. */
    [[nodiscard]] long Now() const { return m_clock.Time(); }
    /** When a full picture was ended by input since the last call; -1 for none. */
    [[nodiscard]] long TakeInterrupted() { return std::exchange(m_interruptedMs, -1); }
    /** From now until the view shows the full picture. */
    long WaitForFullPicture() {
        const wxStopWatch watch;
        WaitFor([this] { return View().GetEngine().IsLastFrameWhole() && View().IsPictureComplete(); });
        return watch.Time();
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
    long m_pictureMs = 0, m_firstMs = 0;
    wxStopWatch m_clock;
    long m_interruptedMs = -1;
    wxStopWatch m_sincePaint;
    std::vector<long> m_gaps;
    std::size_t m_gapsThatMoved = 0;
};

/** Of processor time, which says something on a busy machine, too. */
double MsOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

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
    std::printf(
        "{\"opened\": %s, \"open_ms\": %ld, \"longest_gap_ms\": %ld, \"first_ms\": %ld, \"picture_ms\": "
        "%ld}\n",
        opened ? "true" : "false", open, longestGap, bench.FirstMs(), picture);
    return opened ? 0 : 1;
}

/** How quickly a press ends a full picture that is being drawn; -1 where every picture was done before. */
long PressToInterruptionMs(CBench& bench) {
    wxUIActionSimulator hand;
    for (int tries = 0; tries < 8; ++tries) {
        bench.WaitForFullPicture();
        CBench::Rest();
        (void)bench.TakeInterrupted();
        std::atomic<long> pressedMs = -1;
        std::thread other([&] {  // another program presses, while this one draws
            if (std::system("xdotool mousedown 1") == 0) pressedMs = bench.Now();
        });
        // Full pictures one after the other, until one is ended.
        CBench::WaitFor([&] {
            bench.View().Redraw();
            return pressedMs >= 0;
        });
        other.join();
        bench.WaitForPaint();
        const long interruptedMs = bench.TakeInterrupted();
        hand.MouseUp();
        if (interruptedMs >= 0) return std::max(0L, interruptedMs - pressedMs);
    }
    return -1;
}

/** A part's colour follows the hand, as from the colour popup: as many changes as are painted, and what each takes of
 * the window's thread and of all threads. */
int MeasureColor(CBench& bench, const std::string& path) {
    constexpr long kForMs = 3000;
    if (!bench.Open(file_util_ex::ConvertFromUTF8W(path))) return 1;
    if (bench.Frame().StateOfCommand(kCmdPlayAnimation).checked) bench.Frame().RunCommand(kCmdPlayAnimation);
    (void)bench.WaitForFullPicture();
    bench.Frame().RunCommand(kCmdToolColor);
    if (!bench.Frame().Materials().ApplyAgain()) return 1;
    bench.WaitForPaint();
    (void)bench.TakeGaps();
    int changes = 0;
    long worst = 0;
    const double main = MsOf(CLOCK_THREAD_CPUTIME_ID), all = MsOf(CLOCK_PROCESS_CPUTIME_ID);
    const wxStopWatch watch;
    for (; watch.Time() < kForMs; ++changes) {
        const long before = watch.Time();
        bench.Frame().Materials().OnColorChosen(wxColour(static_cast<unsigned char>(changes % 256), 128, 64));
        bench.WaitForPaint();
        worst = std::max(worst, watch.Time() - before);
    }
    const double seconds = static_cast<double>(watch.Time()) / 1000;
    std::printf("{\"changes_a_second\": %.1f, \"main_ms\": %.1f, \"all_ms\": %.1f, \"worst_ms\": %ld}\n",
                changes / seconds, (MsOf(CLOCK_THREAD_CPUTIME_ID) - main) / changes,
                (MsOf(CLOCK_PROCESS_CPUTIME_ID) - all) / changes, worst);
    return 0;
}

/** Drags a model for some seconds. */
int MeasureDrag(CBench& bench, const std::string& path) {
    constexpr long kForLevelsMs = 8000;
    if (!bench.Open(file_util_ex::ConvertFromUTF8W(path))) return 1;
    if (bench.Frame().StateOfCommand(kCmdPlayAnimation).checked) bench.Frame().RunCommand(kCmdPlayAnimation);
    const wxStopWatch levels;
    CBench::WaitFor([&] { return levels.Time() > kForLevelsMs; });
    wxWindow* canvas = bench.View().GetCanvas()->GetWindow();
    const wxPoint center(canvas->GetClientSize().x / 2, canvas->GetClientSize().y / 2);
    const wxPoint middle = canvas->ClientToScreen(center);
    wxUIActionSimulator hand;
    hand.MouseMove(middle);
    hand.MouseDown();
    bench.WaitForPaint();
    // Another program moves the mouse, as a hand does, whether this one keeps up or not.
    std::string way = "xdotool";
    for (int step = 0; step < 400; ++step) {
        const double angle = (step + 1) * 0.02;
        way += " mousemove " + std::to_string(middle.x + std::lround(150 * std::sin(angle))) + " " +
               std::to_string(middle.y + std::lround(80 * (1 - std::cos(angle)))) + " sleep 0.01";
    }
    std::atomic<bool> arrived = false;
    std::thread other([&] { arrived = std::system(way.c_str()) == 0; });
    (void)bench.TakeGaps();
    const wxStopWatch drag;
    CBench::WaitFor([&] { return arrived.load(); });
    other.join();
    const double seconds = static_cast<double>(drag.Time()) / 1000;
    std::vector<long> gaps = bench.TakeGaps();
    const auto frames = static_cast<double>(gaps.size());
    const long held = bench.WaitForFullPicture();
    hand.MouseMove(middle);
    hand.MouseUp();
    CBench::WaitFor([&] { return bench.View().GetDragState() == EDragState::Idle; });
    const long released = bench.WaitForFullPicture();
    gaps.push_back(0);
    std::sort(gaps.begin(), gaps.end());
    std::printf(
        "{\"frames_a_second\": %.1f, \"median_ms\": %ld, \"worst_ms\": %ld, \"held_to_full_ms\": %ld, "
        "\"release_to_full_ms\": %ld, \"press_to_interruption_ms\": %ld}\n",
        frames / seconds, gaps[gaps.size() / 2], gaps.back(), held, released, PressToInterruptionMs(bench));
    return 0;
}

/** Opens a scene that plays, and looks how soon it does so smoothly. */
int MeasurePlaying(CBench& bench, const std::string& path) {
    constexpr long kLongestMs = 60'000, kCountedMs = 3'000;
    if (!bench.Open(file_util_ex::ConvertFromUTF8W(path)) || !bench.View().HasAnimation()) return 1;
    bench.WaitForPaint();
    const wxStopWatch watch;
    const int before = bench.Paints();
    CBench::WaitFor(
        [&] { return !bench.View().GetEngine().IsLastFrameWhole() || watch.Time() > kLongestMs; });
    const long untilSmooth = std::max(1L, watch.Time());
    const int smoothFrom = bench.Paints();
    const wxStopWatch smooth;
    CBench::WaitFor([&] { return smooth.Time() > kCountedMs; });
    const auto rate = [](int frames, long ms) { return frames * 1000.0 / static_cast<double>(ms); };
    std::printf("{\"until_smooth_ms\": %ld, \"frames_a_second_before\": %.1f, \"frames_a_second\": %.1f}\n",
                untilSmooth, rate(smoothFrom - before, untilSmooth),
                rate(bench.Paints() - smoothFrom, smooth.Time()));
    return 0;
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
    if (what == "drag") return MeasureDrag(bench, argv[2]);
    if (what == "color") return MeasureColor(bench, argv[2]);
    if (what == "play") return MeasurePlaying(bench, argv[2]);
    if (what == "step") return MeasureSteps(bench, argv[2]);
    if (what == "memory") return MeasureMemory(bench, {argv + 2, argv + argc});
    std::fprintf(stderr,
                 "usage: orbivue_window_bench open FILE | drag FILE | color FILE | play FILE | step FOLDER | "
                 "memory FOLDER...\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    return RunInToolkit(argv, [&] { return Run(argc, argv); });
}
