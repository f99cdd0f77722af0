// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <fstream>
#include <map>

#include "files/std_file_paths.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_mesh.h"
#include "model/prepare/prepare_scene.h"
#include "scene_builder/large_scene.h"

namespace {

/** The bytes of a generated scene; each size is made once. */
const std::vector<std::byte>& SceneBytes(long triangles) {
    static std::map<long, std::vector<std::byte>> scenes;
    std::vector<std::byte>& bytes = scenes[triangles];
    if (bytes.empty()) {
        const std::string path = std_file_paths::GetTempFilePath("bench.3ds");
        MakeLargeScene(triangles, path);
        std::ifstream file(path, std::ios::binary | std::ios::ate);
        bytes.resize(static_cast<std::size_t>(file.tellg()));
        file.seekg(0);
        file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        std_file_paths::DeleteTempDir();
    }
    return bytes;
}

CScene ReadScene(long triangles) {
    return std::move(CSceneReader::ReadBytes(SceneBytes(triangles)).Value());
}

void CountTriangles(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/** Walking, guarding and mending the bytes of a file, until there is a scene. */
void GuardAndRead(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::byte> bytes = SceneBytes(state.range(0));
        state.ResumeTiming();
        CResult<CScene> scene = CSceneReader::ReadBytes(std::move(bytes));
        benchmark::DoNotOptimize(scene);
    }
    CountTriangles(state);
}

/** The whole prepared scene; the second argument is the number of threads, 0 for one a core. */
void Prepare(benchmark::State& state) {
    const CScene scene = ReadScene(state.range(0));
    for (auto _ : state) {
        CPreparedScene prepared =
            PrepareScene(scene, {.threads = static_cast<unsigned>(state.range(1)), .loadTextures = false});
        benchmark::DoNotOptimize(prepared);
    }
    CountTriangles(state);
}

/** Normals and splitting alone, on one thread. */
void Normals(benchmark::State& state) {
    const CScene scene = ReadScene(state.range(0));
    for (auto _ : state) {
        for (const CMeshView& view : scene.Meshes()) {
            CPreparedMesh mesh = PrepareMesh(view, 0, true);
            benchmark::DoNotOptimize(mesh);
        }
    }
    CountTriangles(state);
}

/** One frame of an animation: every node's transform and bounds. */
void Evaluate(benchmark::State& state) {
    const CScene scene = ReadScene(state.range(0));
    CPreparedScene prepared = PrepareScene(scene, {.loadTextures = false});
    float frame = 0;
    for (auto _ : state) {
        EvaluateNodes(prepared, scene, frame);
        frame = frame < 99 ? frame + 1 : 0;
    }
}

constexpr long kSmall = 100'000, kLarge = 1'000'000;

BENCHMARK(GuardAndRead)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(Prepare)
    ->Args({kSmall, 1})
    ->Args({kLarge, 1})
    ->Args({kLarge, 0})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(Normals)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(Evaluate)->Arg(kLarge)->Unit(benchmark::kMicrosecond);

}  // namespace
