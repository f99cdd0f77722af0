// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "files/start_program.h"

/** Which rclone is used, and which of its remotes count. The program uses the defaults; nothing outside this process
 * changes them, so no model and no variable has another place taken for a drive. */
struct CRcloneSetup {
    std::string program = "rclone";          ///< a path, or a name to be found in $PATH
    std::vector<std::string> moreArguments;  ///< for each command
    std::string remoteType = "drive";        ///< rclone's name for the kind of storage
    std::string password;                    ///< of its configuration; empty: none is given
};

/** One run of rclone: without a shell, without input, never asking for a password. Poll it from time to time. */
class CRclone {
  public:
    using CClock = std::chrono::steady_clock;

    /** command: its name and options; operands follow "--", so none is taken for an option. silence: for how long the
     * program may print nothing before it is ended; longest: for how long it may run. */
    [[nodiscard]] static CResult<CRclone> Start(const CRcloneSetup& setup,
                                                const std::vector<std::string>& command,
                                                const std::vector<std::string>& operands,
                                                std::chrono::milliseconds silence,
                                                std::chrono::milliseconds longest);

    /** Takes what was printed since the last call. True once the program has ended and all is taken. */
    [[nodiscard]] bool Poll();
    /** After the end: whether it did what it should. */
    [[nodiscard]] bool HasSucceeded() const { return m_exitCode == 0 && !m_wasSilent; }
    [[nodiscard]] bool WasSilent() const { return m_wasSilent; }
    void Kill() { m_process.Kill(); }

    /** Everything on standard output, as far as it was kept. */
    [[nodiscard]] const std::string& Output() const { return m_output; }
    /** The complete lines on the error stream since the last call; of very many only the last. */
    [[nodiscard]] std::vector<std::string> TakeErrorLines();

  private:
    CRclone(CStartedProgram process, std::chrono::milliseconds silence, std::chrono::milliseconds longest);

    CStartedProgram m_process;
    std::chrono::milliseconds m_silence, m_longest;
    CClock::time_point m_begun = CClock::now(), m_lastWord = m_begun;
    std::string m_output, m_errors;
    std::optional<int> m_exitCode;
    bool m_wasSilent = false;
};
