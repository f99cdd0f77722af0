// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

/** Remembers the environment at its construction; as long as it lives, programs are started with that.
 * Construct it first in main(), before this process changes variables for itself. Without one, programs get
 * the environment at the time of their start. */
class CUserEnvironment {
  public:
    CUserEnvironment();
    CUserEnvironment(const CUserEnvironment&) = delete;
    CUserEnvironment& operator=(const CUserEnvironment&) = delete;
    ~CUserEnvironment();
};

struct CProgramToStart {
    std::string program;                 ///< its path, or a name to be found in an absolute folder of $PATH
    std::vector<std::string> arguments;  ///< passed as they are, without a shell
    std::string folder;                  ///< working folder; this process's where it does not exist
    /** True for a helper whose output is read and whose end is awaited: it has a low priority. False
     * for a program of the user's: it has a session of its own, lives on when this process ends, and
     * prints nothing. */
    bool isHelper = false;
    bool takesInput = false;  ///< a helper that reads what WriteInput gives it
    bool isLast = false;      ///< a helper that gets hardly any processor time while others want it
    std::vector<std::string> variables{};  ///< "NAME=value", set for this program beside the user's
};

/** A program that was started. The program lives on when this object is destroyed. */
class CStartedProgram {
  public:
    CStartedProgram(CStartedProgram&& other) noexcept;
    CStartedProgram& operator=(CStartedProgram&&) = delete;
    ~CStartedProgram();

    /** Appends what a helper wrote to its output and error streams since the last call. Each text grows to at
     * most maxBytes; the rest is dropped. Does not wait. */
    void ReadOutput(std::string& output, std::string& errors, std::size_t maxBytes);
    /** Gives a helper that takes input some bytes more; false where it has ended, or has read so little that
     * there is no room for them. Does not wait. At most 4,096 bytes. */
    [[nodiscard]] bool WriteInput(std::string_view bytes);
    /** The exit code; nothing while the program runs, 128 plus the signal's number when it was killed. */
    [[nodiscard]] std::optional<int> ExitCode();
    /** ExitCode() after waiting for the end, at most `limit`. */
    [[nodiscard]] std::optional<int> WaitForEnd(std::chrono::milliseconds limit);
    void Kill();

  private:
    friend CResult<CStartedProgram> StartProgram(const CProgramToStart& what);
    CStartedProgram() = default;

    pid_t m_pid = -1;
    std::optional<int> m_exitCode;
    CFileDescriptor m_input, m_output, m_errors;
};

/** What programs are started with, "NAME=value" each: see CUserEnvironment. For what starts one in another way. */
[[nodiscard]] std::vector<std::string> UsersEnvironment();

/** True where StartProgram would find a program of that name. */
[[nodiscard]] bool IsProgramInstalled(const std::string& name);

/** Starts a program with the user's environment (see CUserEnvironment), without input unless it takes it, and without
 * this process's open files. Returns at once. NotFound, with the program's name in `where`: it is
 * not installed. */
[[nodiscard]] CResult<CStartedProgram> StartProgram(const CProgramToStart& what);
