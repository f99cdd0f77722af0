// SPDX-License-Identifier: MIT
// make_large TRIANGLES FILE [TEXTURE]: writes the scene that measurements use.
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>

#include "scene_builder/large_scene.h"

int main(int argc, char** argv) {
    long triangles = 0;
    if (argc >= 3) std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), triangles);
    if (argc > 4 || triangles < 1 || triangles > 50'000'000) {
        std::fprintf(stderr, "usage: make_large TRIANGLES FILE [TEXTURE]\n");
        return 2;
    }
    try {
        MakeLargeScene(triangles, argv[2], argc == 4 ? argv[3] : "CHECKER.JPG");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_large: %s\n", error.what());
        return 1;
    }
    return 0;
}
