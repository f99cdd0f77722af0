// SPDX-License-Identifier: MIT
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

#include "files/CTestFolder.h"

/** How a program that was run has ended. */
struct CProgramRun {
    int code = -1;  ///< over 100: by a signal
    std::string out, err;

    /** Runs it as a shell does, in the folder, with no display to be had. */
    [[nodiscard]] static CProgramRun Of(const std::string& program, const CTestFolder& folder,
                                        const std::string& arguments, const std::string& before = "") {
        const std::string command = "cd '" + folder.Path() + "' && unset DISPLAY WAYLAND_DISPLAY; " + before +
                                    "'" + program + "' " + arguments + " 2>err.txt";
        CProgramRun run;
        FILE* pipe = ::popen(command.c_str(), "r");
        std::array<char, 4096> buffer{};
        for (std::size_t n; (n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
            run.out.append(buffer.data(), n);
        const int status = ::pclose(pipe);
        run.code = WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
        run.err = CTestFolder::TextOf(folder / "err.txt");
        return run;
    }
};
