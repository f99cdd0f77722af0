// SPDX-License-Identifier: MIT
// list_groups ADDRESS   what the desktop program's client sees of a server: a line for each group; or why it sees nothing, and 1.
#include <cstdio>

#include "modeldb/client/C3DModelsLoadApi.h"

int main(int argc, char** argv) {
    std::vector<std::string> names;
    if (argc == 2 && C3DModelsLoadApi::Open(argv[1])) C3DModelsLoadApi::GetGroups(names, nullptr);
    const std::string error = C3DModelsLoadApi::LastError();
    for (const std::string& name : names) std::printf("%s\n", name.c_str());
    if (!error.empty()) std::printf("%s\n", error.c_str());
    return argc == 2 && error.empty() ? 0 : 1;
}
