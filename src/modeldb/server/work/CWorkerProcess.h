// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <string>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

/** What a process is given. */
struct CWorkerStart {
    std::string program, job;
    const CFileDescriptor& order;
    const CFileDescriptor& input;
    const CFileDescriptor* page = nullptr;
};

/** One process that does one job. It has no other file of ours and nothing of our environment, and ends with the thread that
 * started it; with this object it is killed and waited for. */
class CWorkerProcess {
  public:
    /** Busy: the system gives no process now. */
    [[nodiscard]] static CResult<CWorkerProcess> Start(const CWorkerStart& what);
    CWorkerProcess(CWorkerProcess&& other) noexcept;
    CWorkerProcess& operator=(CWorkerProcess&&) = delete;
    ~CWorkerProcess();

    enum class EEnd {
        Itself,   ///< it has written its answer, and its exit code is 0
        Crashed,  ///< a signal or another exit code
        Killed,   ///< by somebody else, most likely for want of memory
        Slow,     ///< its time was up
        Stopped,
    };
    struct COutcome {
        EEnd end = EEnd::Crashed;
        std::string answer;  ///< at most mostBytes and one more
    };
    /** Waits for its end, until it has taken too long, has said too much, or stop becomes true, and kills it then. */
    [[nodiscard]] COutcome Wait(std::chrono::steady_clock::time_point until, std::size_t mostBytes,
                                const std::atomic<bool>& stop);

  private:
    CWorkerProcess() = default;
    /** False when it is over or too much. */
    [[nodiscard]] bool ReadSome(std::string& answer, std::size_t mostBytes) const;
    [[nodiscard]] std::optional<int> StatusNow();
    int Kill();

    pid_t m_pid = -1;
    CFileDescriptor m_answer;
};
