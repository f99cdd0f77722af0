// SPDX-License-Identifier: MIT
// What an edit costs until the scene can be drawn with it, apart from the drawing itself.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "engine/gl/gl_api.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "model/prepare/CPreparedScene.h"
#include "picture/image_writer.h"
#include "scene_builder/large_scene.h"

namespace {

constexpr long kTriangles = 1'000'000;

/** An engine that has drawn a large scene once; its pictures are of 2048 x 2048. */
class CDrawnScene {
  public:
    explicit CDrawnScene(long triangles) : m_context(COffscreenContext::Create(64, 64)) {
        const std::string path = std_file_paths::GetTempFilePath("edit_bench.3ds");
        MakeLargeScene(triangles, path, "noise.png");
        WritePicture(std_file_paths::GetTempFilePath("noise.png"));
        m_isOpen = m_context && m_engine.OpenModel(file_util_ex::ConvertFromUTF8W(path).c_str());
        if (!m_isOpen) return;
        (void)m_context.Value().MakeCurrent();
        m_engine.SetPreviewSize(C2DRect(0, 0, 64, 64));
        m_engine.PaintModel();
        glFinish();
    }
    CDrawnScene(const CDrawnScene&) = delete;
    CDrawnScene& operator=(const CDrawnScene&) = delete;
    ~CDrawnScene() { std_file_paths::DeleteTempDir(); }

    [[nodiscard]] bool IsOpen() const { return m_isOpen; }
    C3dsDisplayWrap& Engine() { return m_engine; }
    /** Brings everything up to date that a frame needs, short of drawing it. */
    void MakeDrawable() {
        (void)m_engine.InitDrawings(GL_RENDER, -1, -1);
        glFinish();
    }

  private:
    static void WritePicture(const std::string& path) {
        CImage image{2048, 2048, std::vector<std::uint8_t>(2048ULL * 2048 * 4, 255)};
        std::uint32_t noise = 1;
        for (std::size_t i = 0; i < image.rgba.size(); i += 4) {
            noise = noise * 1664525 + 1013904223;
            image.rgba[i] = image.rgba[i + 1] = static_cast<std::uint8_t>(noise >> 26 << 2);
        }
        (void)image_codec::WritePng(path, image, false);
    }

    CResult<COffscreenContext> m_context;
    C3dsDisplayWrap m_engine;
    bool m_isOpen = false;
};

float Shade(std::int64_t turn) {
    return static_cast<float>(turn % 100) / 100;
}

void ColorEverywhere(benchmark::State& state) {
    CDrawnScene scene(state.range(0));
    std::int64_t turn = 0;
    for (auto _ : state) {
        if (!scene.IsOpen() || !scene.Engine().SetMaterialColor("MAT0001", Shade(++turn), 0.5f, 0.5f))
            state.SkipWithError("the edit failed");
        scene.MakeDrawable();
    }
}

/** A node that shares its mesh with another and its materials with all: the first time they are split off. */
void FirstColorOfNode(benchmark::State& state) {
    CDrawnScene scene(state.range(0));
    std::int64_t turn = 0;
    for (auto _ : state) {
        const std::string node = std::string(turn < 10 ? "MESH000" : "MESH00") + std::to_string(turn);
        ++turn;
        if (!scene.IsOpen() || !scene.Engine().SetNodeMaterialColor(node.c_str(), nullptr, 1, 0.5f, 0.5f))
            state.SkipWithError("the edit failed");
        scene.MakeDrawable();
    }
}

void ColorOfNode(benchmark::State& state) {
    CDrawnScene scene(state.range(0));
    std::int64_t turn = 0;
    for (auto _ : state) {
        if (!scene.IsOpen() || !scene.Engine().SetNodeMaterialColor("MESH0001", nullptr, Shade(++turn), 1, 0))
            state.SkipWithError("the edit failed");
        scene.MakeDrawable();
    }
}

void TenShininessEditsBesideAPicture(benchmark::State& state) {
    CDrawnScene scene(state.range(0));
    std::int64_t turn = 0;
    for (auto _ : state) {
        for (int i = 0; i < 10; ++i) {
            if (!scene.IsOpen() || !scene.Engine().SetMaterialShininess("MAT0001", Shade(++turn)))
                state.SkipWithError("the edit failed");
            scene.MakeDrawable();
        }
    }
}

void Move(benchmark::State& state) {
    CDrawnScene scene(state.range(0));
    for (auto _ : state) {
        if (!scene.IsOpen() || !scene.Engine().MoveNode("MESH0002", 0.01f, 0, 0))
            state.SkipWithError("the edit failed");
        scene.MakeDrawable();
    }
}

std::vector<CEdit> ThousandOfAScript() {
    std::vector<CEdit> edits;
    for (int i = 0; i < 250; ++i) {
        const std::string node = "MESH00" + std::to_string(10 + i % 6);
        edits.push_back(CMoveEdit{node, {0.01f, 0, 0}});
        edits.push_back(CRotateEdit{node, {1, 0, 0}});
        edits.push_back(CColorEdit{{node, {}}, {Shade(i), 0, 0}});
        edits.push_back(CTransparencyEdit{{{}, "MAT0002"}, 0.1f * Shade(i)});
    }
    return edits;
}

/** A script's edits, from the scene as it was opened. */
void ThousandEdits(benchmark::State& state) {
    CDrawnScene scene(state.range(0));
    const std::vector<CEdit> edits = ThousandOfAScript();
    for (auto _ : state) {
        const std::vector<CStatus> answers = scene.Engine().ApplyEdits(edits);
        scene.MakeDrawable();
        state.PauseTiming();
        const bool good =
            std::all_of(answers.begin(), answers.end(), [](const CStatus& a) { return bool(a); });
        if (!good || !scene.Engine().TakeBackEdits(edits.size())) state.SkipWithError("an edit failed");
        scene.MakeDrawable();
        state.ResumeTiming();
    }
}

void TakeThousandBack(benchmark::State& state) {
    CDrawnScene scene(state.range(0));
    const std::vector<CEdit> edits = ThousandOfAScript();
    for (auto _ : state) {
        state.PauseTiming();
        (void)scene.Engine().ApplyEdits(edits);
        scene.MakeDrawable();
        state.ResumeTiming();
        if (!scene.Engine().TakeBackEdits(edits.size())) state.SkipWithError("they did not all succeed");
        scene.MakeDrawable();
    }
}

BENCHMARK(ColorEverywhere)->Arg(78'000)->Arg(kTriangles)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(FirstColorOfNode)->Arg(kTriangles)->Iterations(10)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ColorOfNode)->Arg(kTriangles)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(TenShininessEditsBesideAPicture)->Arg(78'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Move)->Arg(kTriangles)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ThousandEdits)->Arg(kTriangles)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(TakeThousandBack)->Arg(kTriangles)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
