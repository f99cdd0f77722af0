// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/CBatchProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "programs/orbivue_render/CRenderOptions.h"
#include "programs/orbivue_render/batch_lines.h"
#include "programs/orbivue_render/draw_batch.h"
#include "programs/shared/input_files.h"

namespace {

constexpr std::size_t kMostAnswerBytes = 1 << 20;

struct CPipe {
    CFileDescriptor read, write;
};

std::optional<CPipe> MakePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
    return CPipe{CFileDescriptor(ends[0]), CFileDescriptor(ends[1])};
}

std::string Resolved(const std::string& path) {
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
    return error ? path : resolved.native();
}

/** What the new process does; it never returns. */
[[noreturn]] void Work(const CRenderOptions& options, const CFileAccess& files, CPipe& orders, CPipe& answers,
                       pid_t parent) {
    (void)::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(1);
    (void)orders.write.Close();  // or its end would never be seen
    (void)answers.read.Close();
    DrawBatch(options, files, orders.read.Get(), answers.write.Get());
    ::_exit(0);
}

}  // namespace

std::optional<CBatchProcess> CBatchProcess::Start(const CRenderOptions& options,
                                                  std::span<const std::string> paths) {
    std::optional<CPipe> orders = MakePipe(), answers = MakePipe();
    if (!orders || !answers) return std::nullopt;
    const CFileAccess files = FilesFor(paths, options.into, options.scene);
    const pid_t self = ::getpid();
    const pid_t pid = ::fork();
    if (pid < 0) return std::nullopt;
    if (pid == 0) Work(options, files, *orders, *answers, self);
    CBatchProcess process;
    process.m_pid = pid;
    process.m_orders = std::move(orders->write);
    process.m_answers = std::move(answers->read);
    (void)::fcntl(process.m_answers.Get(), F_SETFL, O_NONBLOCK);
    for (const std::string& path : files.readable) process.m_readable.insert(Resolved(path));
    return process;
}

CBatchProcess::CBatchProcess(CBatchProcess&& other) noexcept
    : m_pid(std::exchange(other.m_pid, -1)),
      m_orders(std::move(other.m_orders)),
      m_answers(std::move(other.m_answers)),
      m_begun(std::move(other.m_begun)),
      m_readable(std::move(other.m_readable)) {}

CBatchProcess& CBatchProcess::operator=(CBatchProcess&& other) noexcept {
    if (this == &other) return *this;
    End();
    m_pid = std::exchange(other.m_pid, -1);
    m_orders = std::move(other.m_orders);
    m_answers = std::move(other.m_answers);
    m_begun = std::move(other.m_begun);
    m_readable = std::move(other.m_readable);
    return *this;
}

CBatchProcess::~CBatchProcess() {
    End();
}

void CBatchProcess::End() {
    if (m_pid <= 0) return;
    (void)::kill(m_pid, SIGKILL);
    while (::waitpid(m_pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    m_pid = -1;
}

bool CBatchProcess::Covers(const std::string& path) const {
    for (std::string at = Resolved(path); !at.empty() && at != "/"; at = file_util_ex::GetFilePath(at))
        if (m_readable.contains(at)) return true;
    return false;
}

bool CBatchProcess::Send(const CBatchItem& item) {
    std::string order = std::to_string(item.number);
    for (const std::string* part : {&item.input, &item.path, &item.output}) order += '\0' + *part;
    order += '\0';
    std::size_t sent = 0;
    while (sent < order.size()) {
        const ssize_t put = ::write(m_orders.Get(), order.data() + sent, order.size() - sent);
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return false;
        sent += static_cast<std::size_t>(put);
    }
    return true;
}

CBatchProcess::CAnswer CBatchProcess::ReadAnswer() {
    std::array<char, 4096> buffer{};
    const ssize_t got = ::read(m_answers.Get(), buffer.data(), buffer.size());
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) return {};
    if (got <= 0) return {EState::Ended, {}};
    m_begun.append(buffer.data(), static_cast<std::size_t>(got));
    const std::size_t end = m_begun.find('\n');
    if (end == std::string::npos)
        return {m_begun.size() > kMostAnswerBytes ? EState::Ended : EState::Busy, {}};
    CAnswer answer{EState::Done, m_begun.substr(0, end + 1)};
    m_begun.erase(0, end + 1);
    return answer;
}

std::string CBatchProcess::WhyItEnded() {
    int status = 0;
    (void)::kill(m_pid, SIGKILL);  // of one that has ended already nothing changes
    while (::waitpid(m_pid, &status, 0) < 0 && errno == EINTR) {
    }
    m_pid = -1;
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU) return lng::Mark("drawing it takes too long");
    return lng::Mark("drawing it ended the program");
}
