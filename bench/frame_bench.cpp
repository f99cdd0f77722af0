// SPDX-License-Identifier: MIT
// orbivue_frame_bench FILE [FRAMES]: how long a frame takes while the scene turns, and a pick;
// 1280x800, as JSON.
#include <GL/glu.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <thread>

#include "base/process_memory.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "engine/gl/gl_api.h"
#include "files/file_util_ex.h"

namespace {

constexpr int kWidth = 1280, kHeight = 800;
using CClock = std::chrono::steady_clock;
double MsSince(CClock::time_point start) {
    return std::chrono::duration<double, std::milli>(CClock::now() - start).count();
}

/** Until the pixels are there: software OpenGL may put work off. */
void Finish() {
    glFinish();
}

/** As in a window that was at rest for a while. */
void UseIdleTime(C3dsDisplayWrap& engine) {
    for (int i = 0; i < 2; ++i) {  // the first picture takes longer than the next
        engine.PaintModel();
        Finish();
    }
    while (engine.WorkOnLevels()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    engine.PaintModel();
    Finish();
}

double FrameMs(C3dsDisplayWrap& engine, int frames) {
    UseIdleTime(engine);
    const CClock::time_point start = CClock::now();
    for (int i = 0; i < frames; ++i) {
        engine.UpdateRotAngles(3, 1);
        engine.PaintModel();
        Finish();
    }
    return MsSince(start) / frames;
}

/** The camera goes onto the projection matrix, as every caller of the engine does it. */
void LookThroughCamera(const C3dsDisplayWrap& engine) {
    gluLookAt(engine.GetEyeX(), engine.GetEyeY(), engine.GetEyeZ(), engine.GetXOrg(), engine.GetYOrg(),
              engine.GetZOrg(), engine.GetUpX(), engine.GetUpY(), engine.GetUpZ());
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void DrawForPick(C3dsDisplayWrap& engine, int x, int y) {
    if (!engine.InitDrawings(GL_SELECT, x, y)) return;
    LookThroughCamera(engine);
    engine.DrawModel(GL_SELECT);
}

/** The slowest of 25 picks spread over the view. */
double PickMs(C3dsDisplayWrap& engine, int& hits) {
    double slowest = 0;
    for (int i = 0; i < 25; ++i) {
        std::array<GLuint, 512> words{};
        const CClock::time_point start = CClock::now();
        glSelectBuffer(static_cast<GLsizei>(words.size()), words.data());
        (void)glRenderMode(GL_SELECT);  // answers how plain drawing ended
        glInitNames();
        glPushName(0xFFFFFFFFu);
        DrawForPick(engine, kWidth * (1 + i % 5) / 6, kHeight * (1 + i / 5) / 6);
        hits += glRenderMode(GL_RENDER) != 0 ? 1 : 0;
        slowest = std::max(slowest, MsSince(start));
    }
    return slowest;
}

int Measure(const char* path, int frames) {
    C3dsDisplayWrap engine;
    CResult<COffscreenContext> context = COffscreenContext::Create(kWidth, kHeight, 1);
    if (!context || !engine.OpenModel(file_util_ex::ConvertFromUTF8W(path).c_str())) {
        std::fprintf(stderr, "%s\n", (context ? engine.LastError() : context.Error()).Text().c_str());
        return 1;
    }
    (void)context.Value().MakeCurrent();  // the token is for those who draw themselves
    engine.SetPreviewSize(C2DRect(0, 0, kWidth, kHeight));
    engine.SetIsoCameraModel();
    const double frameMs = FrameMs(engine, frames);
    int hits = 0;
    const double pickMs = PickMs(engine, hits);
    if (hits == 0) {
        std::fprintf(stderr, "%s: no pick hit anything\n", path);
        return 1;
    }
    std::printf("{\"frame_ms\": %.2f, \"pick_ms\": %.2f, \"picks_that_hit\": %d}\n", frameMs, pickMs, hits);
    engine.CloseModel();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    process_memory::KeepFreedBlocks();
    int frames = 20;
    if (argc == 3) std::from_chars(argv[2], argv[2] + std::strlen(argv[2]), frames);
    if (argc < 2 || argc > 3 || frames < 1) {
        std::fprintf(stderr, "usage: orbivue_frame_bench FILE [FRAMES]\n");
        return 2;
    }
    try {
        return Measure(argv[1], frames);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orbivue_frame_bench: %s\n", error.what());
        return 1;
    }
}
