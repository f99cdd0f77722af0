// SPDX-License-Identifier: MIT
#include <chrono>
#include <cstdio>
#include <string_view>

#include "base/text/utf8_text.h"
#include "export/gltf/write_gltf.h"
#include "model/open/load_scene.h"

namespace {

constexpr const char* kUsage =
    "orbivue-gltf [-compress] [-double-sided] [-no-extras] [-no-textures] [-2048] MODEL OUTPUT.glb\n";

int Fail(const CError& error) {
    std::fprintf(stderr, "orbivue-gltf: %s\n", utf8_text::Printable(error.Text(), ' ').c_str());
    return 2;
}

int Export(const char* model, const char* output, const CGltfOptions& options) {
    const CResult<CLoadedScene> loaded = LoadScene(model);
    if (!loaded) return Fail(loaded.Error());
    const CScene& scene = loaded.Value().scene;
    const CPreparedScene& prepared = loaded.Value().prepared;
    const auto begin = std::chrono::steady_clock::now();
    const CStatus status = WriteGlbFile({prepared, scene.Textures(), &scene}, output, options);
    if (!status) return Fail(status.Error());
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
    std::printf("%zu triangles written in %.1f ms\n", prepared.triangleCount, time.count());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    CGltfOptions options;
    int at = 1;
    for (; at < argc && argv[at][0] == '-'; ++at) {
        const std::string_view option = argv[at];
        if (option == "-compress") options.compress = true;
        if (option == "-double-sided") options.doubleSided = true;
        if (option == "-no-extras") options.withExtras = false;
        if (option == "-no-textures") options.withTextures = false;
        if (option == "-2048") options.maxTextureSide = 2048;
    }
    if (argc != at + 2) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    return Export(argv[at], argv[at + 1], options);
}
