// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <cmath>
#include <fstream>
#include <map>

#include "base/text/number_text.h"
#include "files/std_file_paths.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_mesh.h"
#include "model/prepare/prepare_scene.h"
#include "model/read_obj/CObjConv3ds.h"
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

/** A wavy square as exporters write one: every corner with place, texture coordinates and normal. */
std::string ObjText(long triangles) {
    const long side = std::lround(std::sqrt(static_cast<double>(triangles) / 2));
    std::string text = "o square\nusemtl paint\ns 1\n";
    const auto add = [&text](const char* keyword, std::initializer_list<double> numbers) {
        text += keyword;
        for (const double number : numbers) number_text::AppendFixed(text += ' ', number, 6);
        text += '\n';
    };
    for (long i = 0; i < (side + 1) * (side + 1); ++i) {
        const double x = static_cast<double>(i % (side + 1)), y = static_cast<double>(i / (side + 1));
        add("v", {x, std::sin(x / 10) * std::cos(y / 10), y});
        add("vt", {x / static_cast<double>(side), y / static_cast<double>(side)});
        add("vn", {std::cos(x / 10) * 0.1, 0.99, std::sin(y / 10) * 0.1});
    }
    const auto corner = [&text](long number) {
        const std::string digits = std::to_string(number);
        text.append(" ").append(digits).append("/").append(digits).append("/").append(digits);
    };
    for (long i = 0; i < side * side; ++i) {
        const long first = i / side * (side + 1) + i % side + 1, above = first + side + 1;
        for (const long second : {first + 1, above + 1}) {
            text += "f";
            corner(first);
            corner(second);
            corner(second == first + 1 ? above + 1 : above);
            text += "\n";
        }
    }
    return text;
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

/** From the text of an OBJ file to a scene of lib3ds. */
void ReadObj(benchmark::State& state) {
    const std::string text = ObjText(state.range(0));
    for (auto _ : state) {
        std::vector<CSceneNote> notes;
        CResult<CLib3dsFilePtr> file = CObjConv3ds::ConvertText(text, {}, notes);
        benchmark::DoNotOptimize(file);
    }
    CountTriangles(state);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
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
    const auto last =
        static_cast<std::uint32_t>(PrepareScene(scene, {.loadTextures = false}).materials.size() - 1);
    for (auto _ : state) {
        for (const CMeshView& view : scene.Meshes()) {
            CPreparedMesh mesh = PrepareMesh(view, last, true);
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
BENCHMARK(ReadObj)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(Prepare)
    ->Args({kSmall, 1})
    ->Args({kLarge, 1})
    ->Args({kLarge, 0})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(Normals)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(Evaluate)->Arg(kLarge)->Unit(benchmark::kMicrosecond);

}  // namespace
