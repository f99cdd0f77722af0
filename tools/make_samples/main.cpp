// SPDX-License-Identifier: MIT
// make_samples FOLDER [SEEDS]: writes the sample scenes into FOLDER and the small test scenes into SEEDS.
#include <cstdio>
#include <exception>

#include "make_samples/scenes.h"

namespace {

void MakeAll(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    scenes::MakeOrrery(folder);
    scenes::MakeMaterials(folder);
    scenes::MakeChess(folder);
    scenes::MakeKnot(folder);
    scenes::MakeVase(folder);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: make_samples FOLDER [SEEDS]\n");
        return 2;
    }
    try {
        MakeAll(argv[1]);
        if (argc == 3) scenes::MakeSeeds(argv[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_samples: %s\n", error.what());
        return 1;
    }
    return 0;
}
