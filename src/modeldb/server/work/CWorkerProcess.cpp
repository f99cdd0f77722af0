// SPDX-License-Identifier: MIT
#include "modeldb/server/work/CWorkerProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <thread>
#include <utility>
#include <vector>

#include "files/system_error.h"
#include "modeldb/server/work/worker_order.h"

namespace {

using CClock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kLook{100}, kShortLook{1};

/** Nothing of ours, where passwords may be. The renderer must not keep what a process made for the next one. */
constexpr std::array kEnvironment{"LC_ALL=C.UTF-8", "PATH=/usr/bin:/bin", "LIBGL_ALWAYS_SOFTWARE=1",
                                  "LP_NUM_THREADS=0", "MESA_SHADER_CACHE_DISABLE=true"};

/** What happens in the new process before its program runs. */
class CSpawnPlan {
  public:
    CSpawnPlan() {
        (void)::posix_spawn_file_actions_init(&m_actions);
        (void)::posix_spawnattr_init(&m_attributes);
        sigset_t none, all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        (void)::posix_spawnattr_setsigmask(&m_attributes, &none);
        (void)::posix_spawnattr_setsigdefault(&m_attributes, &all);
        (void)::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    CSpawnPlan(const CSpawnPlan&) = delete;
    CSpawnPlan& operator=(const CSpawnPlan&) = delete;
    ~CSpawnPlan() {
        (void)::posix_spawn_file_actions_destroy(&m_actions);
        (void)::posix_spawnattr_destroy(&m_attributes);
    }

    /** The new process has it under that number. False where the system has no more descriptors. */
    [[nodiscard]] bool Give(int descriptor, int as) {
        // From above those numbers, so that none is overwritten before it is copied.
        constexpr int kAbove = worker_files::kPage + 1;
        m_copies.emplace_back(::fcntl(descriptor, F_DUPFD_CLOEXEC, kAbove));
        const int copy = m_copies.back().Get();
        return copy >= 0 && ::posix_spawn_file_actions_adddup2(&m_actions, copy, as) == 0;
    }
    /** 0, or the errno value of what failed. */
    [[nodiscard]] int Run(pid_t& child, const std::string& program, std::vector<std::string> arguments,
                          int files) {
        (void)::posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        (void)::posix_spawn_file_actions_addclosefrom_np(&m_actions, files);
        std::vector<std::string> variables(kEnvironment.begin(), kEnvironment.end());
        return ::posix_spawn(&child, program.c_str(), &m_actions, &m_attributes, Pointers(arguments).data(),
                             Pointers(variables).data());
    }

  private:
    static std::vector<char*> Pointers(std::vector<std::string>& texts) {
        std::vector<char*> pointers;
        pointers.reserve(texts.size() + 1);
        for (std::string& text : texts) pointers.push_back(text.data());
        pointers.push_back(nullptr);
        return pointers;
    }

    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
    std::vector<CFileDescriptor> m_copies;
};

CError NoProcess(int number) {
    return {EErrorCode::Busy, SystemErrorText(number), {}};
}

}  // namespace

CResult<CWorkerProcess> CWorkerProcess::Start(const CWorkerStart& what) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return NoProcess(errno);
    CWorkerProcess process;
    process.m_answer = CFileDescriptor(ends[0]);
    const CFileDescriptor to(ends[1]);
    (void)::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    CSpawnPlan plan;
    const bool given = plan.Give(what.order.Get(), worker_files::kOrder) &&
                       plan.Give(to.Get(), worker_files::kAnswer) &&
                       plan.Give(what.input.Get(), worker_files::kInput) &&
                       (!what.page || plan.Give(what.page->Get(), worker_files::kPage));
    if (!given) return NoProcess(EMFILE);
    const int files = what.page ? worker_files::kPage + 1 : worker_files::kPage;
    const int failure =
        plan.Run(process.m_pid, what.program,
                 {"orbivue-modeldb", "--worker", what.job, std::to_string(::getpid())}, files);
    if (failure == 0) return process;
    process.m_pid = -1;
    return NoProcess(failure);
}

CWorkerProcess::CWorkerProcess(CWorkerProcess&& other) noexcept
    : m_pid(std::exchange(other.m_pid, -1)), m_answer(std::move(other.m_answer)) {}

CWorkerProcess::~CWorkerProcess() {
    if (m_pid > 0) (void)Kill();
}

int CWorkerProcess::Kill() {
    int status = 0;
    (void)::kill(m_pid, SIGKILL);  // of one that has ended already nothing changes
    while (::waitpid(m_pid, &status, 0) < 0 && errno == EINTR) {
    }
    m_pid = -1;
    return status;
}

std::optional<int> CWorkerProcess::StatusNow() {
    int status = 0;
    if (::waitpid(m_pid, &status, WNOHANG) != m_pid) return std::nullopt;
    m_pid = -1;
    return status;
}

bool CWorkerProcess::ReadSome(std::string& answer, std::size_t mostBytes) const {
    std::array<char, 16384> buffer{};
    const ssize_t got =
        ::read(m_answer.Get(), buffer.data(), std::min(buffer.size(), mostBytes + 1 - answer.size()));
    if (got < 0) return errno == EINTR || errno == EAGAIN;
    answer.append(buffer.data(), static_cast<std::size_t>(got));
    return got > 0 && answer.size() <= mostBytes;
}

CWorkerProcess::COutcome CWorkerProcess::Wait(CClock::time_point until, std::size_t mostBytes,
                                              const std::atomic<bool>& stop) {
    COutcome outcome;
    bool isOpen = true;
    while (!stop && CClock::now() < until) {
        pollfd news{m_answer.Get(), POLLIN, 0};
        if (isOpen && ::poll(&news, 1, static_cast<int>(kLook.count())) > 0)
            isOpen = ReadSome(outcome.answer, mostBytes);
        if (isOpen) continue;
        if (outcome.answer.size() > mostBytes) break;
        const std::optional<int> status = StatusNow();
        if (!status) {
            std::this_thread::sleep_for(kShortLook);
            continue;
        }
        if (WIFEXITED(*status) && WEXITSTATUS(*status) == 0) outcome.end = EEnd::Itself;
        if (WIFSIGNALED(*status) && WTERMSIG(*status) == SIGKILL) outcome.end = EEnd::Killed;
        if (WIFSIGNALED(*status) && WTERMSIG(*status) == SIGXCPU) outcome.end = EEnd::Slow;
        return outcome;
    }
    if (stop)
        outcome.end = EEnd::Stopped;
    else if (outcome.answer.size() <= mostBytes)
        outcome.end = EEnd::Slow;
    (void)Kill();
    return outcome;
}
