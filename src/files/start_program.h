// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

/** As long as it lives, programs are started with the environment as it was when it was made: first thing in main,
 * before anybody changes a variable for this process's own sake. Without one they get that of their moment. */
class CUserEnvironment {
  public:
    CUserEnvironment();
    CUserEnvironment(const CUserEnvironment&) = delete;
    CUserEnvironment& operator=(const CUserEnvironment&) = delete;
    ~CUserEnvironment();
};

struct CProgramToStart {
    std::string program;                 ///< its path, or a name to be found in an absolute folder of $PATH
    std::vector<std::string> arguments;  ///< as they are: there is no shell
    std::string folder;                  ///< to work in; where there is none, the one of this process
    /** True for a helper whose output is read and whose end is awaited: it has a low priority. False for a program
     * of the user's: it has a session of its own, lives on when this process ends, and prints nothing. */
    bool isHelper = false;
};

/** A program that was started. It lives on when this object goes. */
class CStartedProgram {
  public:
    CStartedProgram(CStartedProgram&& other) noexcept;
    CStartedProgram& operator=(CStartedProgram&&) = delete;
    ~CStartedProgram();

    /** What a helper wrote since the last call is appended; of each, at most maxBytes are kept in all. Waits for
     * nothing. */
    void ReadOutput(std::string& output, std::string& errors, std::size_t maxBytes);
    /** The exit code once it has ended; 128 and the signal's number for one that was killed. */
    [[nodiscard]] std::optional<int> ExitCode();
    /** The same, after waiting for the end, at most so long. */
    [[nodiscard]] std::optional<int> WaitForEnd(std::chrono::milliseconds limit);
    void Kill();

  private:
    friend CResult<CStartedProgram> StartProgram(const CProgramToStart& what);
    CStartedProgram() = default;

    pid_t m_pid = -1;
    std::optional<int> m_exitCode;
    CFileDescriptor m_output, m_errors;
};

/** True where StartProgram would find a program of that name. */
[[nodiscard]] bool IsProgramInstalled(const std::string& name);

/** Starts a program with the user's environment, no input, and no file of this process. Returns at once. NotFound,
 * with its name in where: it is not installed. */
[[nodiscard]] CResult<CStartedProgram> StartProgram(const CProgramToStart& what);
