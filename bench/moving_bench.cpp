// SPDX-License-Identifier: MIT
// orbivue_moving_bench [--still] [--follow] [--busy FACTOR] [--zoom STEPS] [--frames N] [--size WxH] FILE_OR_FOLDER...: scenes that turn while the engine keeps
// a frame's time. Prints a JSON object a line: frames a second, the longest frame, processor time, and how like the
// full picture the moving one is. --busy: on a busy machine the budget of a frame is kept by processor time times FACTOR;
// alone on two cores 0.75 of it pass. --follow: nothing turns, but the colour of the largest part changes with each frame.
#include <sys/resource.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <exception>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "base/process_memory.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "engine/gl/gl_api.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"

namespace {

struct COptions {
    int zoom = 0, frames = 60, width = 1280, height = 800;
    bool still = false, follow = false;
    double busy = 0;  ///< milliseconds that one of processor time counts as; 0: the clock's count
    std::vector<std::string> files;
};

double Seconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/** What the three clocks say: wall, this thread, all threads; in milliseconds. */
struct CTimes {
    double wall = Seconds(CLOCK_MONOTONIC) * 1000, main = Seconds(CLOCK_THREAD_CPUTIME_ID) * 1000,
           all = Seconds(CLOCK_PROCESS_CPUTIME_ID) * 1000;
};

struct CFigures {
    std::vector<double> wall;
    double main = 0, all = 0;
    double worstDb = 99, sumDb = 0;
    int compared = 0, whole = 0;

    void Add(const CTimes& from, const CTimes& to) {
        wall.push_back(to.wall - from.wall);
        main += to.main - from.main;
        all += to.all - from.all;
    }
};

using CPixels = std::vector<unsigned char>;

CPixels Read(const COptions& options) {
    CPixels pixels(static_cast<std::size_t>(options.width) * static_cast<std::size_t>(options.height) * 4);
    glReadPixels(0, 0, options.width, options.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
}

/** The peak signal-to-noise ratio of the colours; 99 for equal pictures. */
double Decibels(const CPixels& a, const CPixels& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (i % 4 == 3) continue;
        const double difference = static_cast<double>(a[i]) - static_cast<double>(b[i]);
        sum += difference * difference;
    }
    const double mean = sum / (static_cast<double>(a.size()) * 0.75);
    return mean > 0 ? std::min(99.0, 10 * std::log10(255 * 255 / mean)) : 99;
}

void Paint(C3dsDisplayWrap& engine) {
    engine.PaintModel();
    glFinish();
}

/** Until all levels are made; returns the milliseconds. */
double MakeLevels(C3dsDisplayWrap& engine) {
    const CTimes begin;
    while (engine.WorkOnLevels()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    return CTimes().wall - begin.wall;
}

/** Turns the scene by one frame's step. */
void Step(C3dsDisplayWrap& engine) {
    engine.UpdateRotAngles(3, 1);
}

bool IsCompared(int frame) {
    return frame % 10 == 5;
}

/** The full pictures of the frames that are compared, all lit by pixel: levels must not have been made yet. */
std::vector<CPixels> FullPictures(C3dsDisplayWrap& engine, const COptions& options, CFigures& figures) {
    const CSeenView before = engine.SeenView();
    std::vector<CPixels> pictures;
    for (int i = 0; i < options.frames; ++i) {
        Step(engine);
        if (!IsCompared(i)) continue;
        const CTimes begin;
        Paint(engine);
        figures.Add(begin, CTimes());
        pictures.push_back(Read(options));
    }
    engine.SetSeenView(before);
    return pictures;
}

CFigures Turn(C3dsDisplayWrap& engine, const COptions& options, const std::vector<CPixels>& full) {
    CFigures figures;
    engine.SetMoving(!options.still);
    for (int i = 0; i < options.frames; ++i) {
        Step(engine);
        const CTimes begin;
        Paint(engine);
        figures.Add(begin, CTimes());
        figures.whole += engine.IsLastFrameWhole() ? 1 : 0;
        if (!IsCompared(i)) continue;
        const double like = Decibels(Read(options), full[static_cast<std::size_t>(figures.compared)]);
        figures.worstDb = std::min(figures.worstDb, like);
        figures.sumDb += like;
        ++figures.compared;
    }
    engine.SetMoving(false);
    return figures;
}

/** The node with most triangles; empty where there is none. */
std::string LargestNode(const CPreparedScene& scene) {
    std::uint32_t most = 0;
    std::string name;
    for (const CPreparedNode& node : scene.nodes) {
        if (node.mesh < 0) continue;
        const std::uint32_t indices = scene.meshes[static_cast<std::size_t>(node.mesh)].IndexCount();
        if (indices <= most) continue;
        most = indices;
        name = node.name;
    }
    return name;
}

/** Colours a node anew for each frame. The first one, which splits off its materials, does not count. */
CFigures Follow(C3dsDisplayWrap& engine, const COptions& options) {
    CFigures figures;
    const std::string node = LargestNode(*engine.Prepared());
    const auto color = [&](int frame) {
        (void)engine.SetNodeMaterialColor(node.c_str(), "", 0.01f * static_cast<float>(frame % 100), 0.5f,
                                          0.25f);
    };
    color(options.frames);
    Paint(engine);
    for (int i = 0; i < options.frames; ++i) {
        color(i);
        engine.SetMoving(!options.still);
        engine.SetFollowing(true);
        const CTimes begin;
        Paint(engine);
        figures.Add(begin, CTimes());
        figures.whole += engine.IsLastFrameWhole() ? 1 : 0;
        engine.SetFollowing(false);
        engine.SetMoving(false);
        if (!IsCompared(i)) continue;
        const CPixels seen = Read(options);
        Paint(engine);
        const double like = Decibels(seen, Read(options));
        figures.worstDb = std::min(figures.worstDb, like);
        figures.sumDb += like;
        ++figures.compared;
    }
    return figures;
}

double PeakMb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

void PrintTimes(const char* name, CFigures figures) {
    std::sort(figures.wall.begin(), figures.wall.end());
    const double n = static_cast<double>(std::max<std::size_t>(figures.wall.size(), 1));
    double sum = 0;
    for (const double ms : figures.wall) sum += ms;
    std::printf(
        "\"%s\": {\"frames_a_second\": %.1f, \"median_ms\": %.1f, \"worst_ms\": %.1f, \"main_ms\": %.1f, "
        "\"all_ms\": %.1f}, ",
        name, n * 1000 / sum, figures.wall[figures.wall.size() / 2], figures.wall.back(), figures.main / n,
        figures.all / n);
}

void Print(const std::string& path, const C3dsDisplayWrap& engine, const CFigures& full,
           const CFigures& turning, double levelsMs) {
    std::printf("{\"file\": \"%s\", \"triangles\": %zu, ", std::filesystem::path(path).filename().c_str(),
                engine.Prepared()->triangleCount);
    PrintTimes("full", full);
    PrintTimes("turning", turning);
    std::printf(
        "\"whole\": %d, \"worst_db\": %.1f, \"mean_db\": %.1f, \"levels_ms\": %.0f, \"peak_mb\": %.0f}\n",
        turning.whole, turning.worstDb, turning.sumDb / std::max(turning.compared, 1), levelsMs, PeakMb());
}

bool Measure(const std::string& path, const COptions& options) {
    C3dsDisplayWrap engine;
    CResult<COffscreenContext> context = COffscreenContext::Create(options.width, options.height, 1);
    if (!context || !engine.OpenModel(file_util_ex::ConvertFromUTF8W(path).c_str())) {
        std::fprintf(stderr, "%s: %s\n", path.c_str(),
                     (context ? engine.LastError() : context.Error()).Text().c_str());
        return false;
    }
    (void)context.Value().MakeCurrent();  // the token is for those who draw themselves
    engine.SetPreviewSize(
        C2DRect(0, 0, static_cast<float>(options.width), static_cast<float>(options.height)));
    engine.SetIsoCameraModel();
    if (options.busy > 0) engine.SetFrameClock([factor = options.busy] { return CTimes().all * factor; });
    for (int i = 0; i < options.zoom; ++i) engine.ZoomModel(-20);
    for (int i = 0; i < 2; ++i) Paint(engine);
    CFigures whole;
    const std::vector<CPixels> full = FullPictures(engine, options, whole);
    const double levelsMs = MakeLevels(engine);
    Print(path, engine, whole, options.follow ? Follow(engine, options) : Turn(engine, options, full),
          levelsMs);
    std::fflush(stdout);
    engine.CloseModel();
    return true;
}

void AddFiles(const std::string& path, std::vector<std::string>& files) {
    if (!std::filesystem::is_directory(path)) return files.push_back(path);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        std::string ending = entry.path().extension().string();
        for (char& c : ending) c = static_cast<char>(c | 0x20);
        if (entry.is_regular_file() && (ending == ".3ds" || ending == ".obj")) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
}

bool ReadOptions(int argc, char** argv, COptions& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        int* number = argument == "--zoom"     ? &options.zoom
                      : argument == "--frames" ? &options.frames
                                               : nullptr;
        if (argument == "--still") {
            options.still = true;
        } else if (argument == "--follow") {
            options.follow = true;
        } else if (argument == "--busy" && i + 1 < argc) {
            ++i;
            std::from_chars(argv[i], argv[i] + std::strlen(argv[i]), options.busy);
        } else if (argument == "--size" && i + 1 < argc) {
            if (std::sscanf(argv[++i], "%dx%d", &options.width, &options.height) != 2) return false;
        } else if (number != nullptr && i + 1 < argc) {
            ++i;
            std::from_chars(argv[i], argv[i] + std::strlen(argv[i]), *number);
        } else {
            AddFiles(argument, options.files);
        }
    }
    return !options.files.empty() && options.frames > 0;
}

}  // namespace

int main(int argc, char** argv) {
    process_memory::KeepFreedBlocks();
    try {
        COptions options;
        if (!ReadOptions(argc, argv, options)) {
            std::fprintf(stderr,
                         "usage: orbivue_moving_bench [--still] [--follow] [--busy FACTOR] [--zoom STEPS] "
                         "[--frames N] "
                         "[--size WxH] FILE...\n");
            return 2;
        }
        bool allOpened = true;
        for (const std::string& file : options.files) allOpened = Measure(file, options) && allOpened;
        return allOpened ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orbivue_moving_bench: %s\n", error.what());
        return 1;
    }
}
