// SPDX-License-Identifier: MIT
#include "modeldb/server/work/worker_command.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <string_view>

#include "modeldb/server/work/unnamed_file.h"
#include "modeldb/server/work/worker_jobs.h"
#include "modeldb/server/work/worker_order.h"
#include "process/confine.h"

namespace {

constexpr std::string_view kWorker = "--worker";
constexpr int kArguments = 4;  // the program, kWorker, the job, who has started it

// Sanitizers take terabytes of addresses.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool kSanitized = false;
#endif

CProcessLimits LimitsFor(std::string_view job) {
    constexpr std::uint64_t kMiB = 1 << 20;
    CProcessLimits limits = LimitsForDrawing();
    if (job != "page") limits.memoryBytes = std::min(limits.memoryBytes, 1024 * kMiB);
    if (kSanitized) limits.memoryBytes = 0;
    limits.processorSeconds = 15;
    limits.fileBytes = 512 * kMiB;
    limits.openFiles = 64;
    return limits;
}

/** Nothing where it cannot be an order. */
std::optional<CWorkerOrder> ReadOrder() {
    constexpr std::size_t kMostBytes = 4 << 20;
    std::string text;
    std::array<char, 16384> buffer{};
    while (text.size() < kMostBytes) {
        const ssize_t got = ::read(worker_files::kOrder, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
    return worker_order::Read(text);
}

std::string AnswerOf(EWorked worked, std::string_view rest = {}) {
    return std::string(1, static_cast<char>(worked)).append(rest);
}

std::string AnswerOf(const CError& error) {
    const bool passes = error.code == EErrorCode::NoGraphics || error.code == EErrorCode::WriteFailed ||
                        error.code == EErrorCode::Unreadable || error.code == EErrorCode::NoSpace;
    return AnswerOf(passes ? EWorked::Fails : EWorked::Refuses, error.message);
}

std::string AnswerOf(const CStatus& status) {
    return status ? AnswerOf(EWorked::Done) : AnswerOf(status.Error());
}

std::string Work(const CWorkerOrder& order) {
    switch (order.work) {
        case EWork::Inspect:
            return AnswerOf(worker_jobs::Inspect(order));
        case EWork::Page:
            return AnswerOf(worker_jobs::WritePage(order));
        case EWork::Preview:
            break;
    }
    const CResult<std::vector<std::byte>> preview = worker_jobs::DrawPreview(order);
    if (!preview) return AnswerOf(preview.Error());
    return AnswerOf(EWorked::Done,
                    {reinterpret_cast<const char*>(preview.Value().data()), preview.Value().size()});
}

std::string WorkOrFail(const CWorkerOrder& order) {
    try {
        return Work(order);
    } catch (const std::bad_alloc&) {
        return AnswerOf(EWorked::Refuses, "reading it takes too much memory");
    } catch (const std::exception& error) {
        return AnswerOf(EWorked::Refuses, error.what());
    }
}

}  // namespace

bool worker_command::IsMeant(int argc, const char* const* argv) {
    return argc == kArguments && argv[1] == kWorker;
}

int worker_command::Run(int argc, const char* const* argv) {
    if (argc != kArguments) return 1;
    (void)::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (std::to_string(::getppid()) != argv[3]) return 1;  // it has ended before the line above
    (void)ConfineProcess({LimitsFor(argv[2]), {}});
    const std::optional<CWorkerOrder> order = ReadOrder();
    if (!order) return 1;
    const std::string answer = WorkOrFail(*order);
    const CStatus told = unnamed_file::AppendTo(worker_files::kAnswer, std::as_bytes(std::span(answer)));
    // Without tearing down what a stranger's bytes have filled.
    ::_exit(told ? 0 : 1);
}
