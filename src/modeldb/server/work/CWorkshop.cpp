// SPDX-License-Identifier: MIT
#include "modeldb/server/work/CWorkshop.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "modeldb/server/work/CWorkerProcess.h"
#include "modeldb/server/work/unnamed_file.h"
#include "modeldb/server/work/worker_order.h"

namespace {

using CClock = std::chrono::steady_clock;
using EEnd = CWorkerProcess::EEnd;

CError Stopped() {
    return {EErrorCode::Cancelled, "the program is ending", {}};
}

const char* JobOf(EWork work) {
    switch (work) {
        case EWork::Inspect:
            return "inspect";
        case EWork::Preview:
            return "preview";
        case EWork::Page:
            break;
    }
    return "page";
}

/** Descriptors for the new process. */
struct CGiven {
    CFileDescriptor order, input;
};

CResult<CGiven> Prepare(EWork work, const CModelInput& input, const std::string& folder) {
    CResult<CFileDescriptor> order = unnamed_file::Make(folder);
    if (!order) return order.Error();
    const std::string text = worker_order::Write(work, input);
    if (CStatus put = unnamed_file::Append(order.Value(), std::as_bytes(std::span(text))); !put)
        return put.Error();
    CResult<CFileDescriptor> reading = unnamed_file::OpenToRead(order.Value());
    if (!reading) return reading.Error();
    CResult<CFileDescriptor> model = unnamed_file::OpenToRead(*input.file);
    if (!model) return model.Error();
    return CGiven{std::move(reading).Value(), std::move(model).Value()};
}

/** What an end without an answer means for the model. */
CError WhyItEnded(EEnd end) {
    switch (end) {
        case EEnd::Slow:
            return {EErrorCode::TooLarge, "reading it takes too long", {}};
        case EEnd::Killed:
            return {EErrorCode::Busy, "the system has ended the reading process", {}};
        case EEnd::Stopped:
            return Stopped();
        case EEnd::Itself:
        case EEnd::Crashed:
            break;
    }
    return {EErrorCode::BadFormat, "reading it ends the reading process", {}};
}

}  // namespace

struct CWorkshop::CState {
    explicit CState(COptions wanted) : options(std::move(wanted)) {
        if (options.processes == 0) options.processes = std::thread::hardware_concurrency();
        options.processes = std::max(options.processes, 2U);
    }

    /** True when a process may be started; Leave must follow. */
    [[nodiscard]] bool Enter(bool isLong) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, options.waiting, [&] {
            if (stop) return true;
            if (running == options.processes || (isLong && runningLong + 1 == options.processes))
                return false;
            ++running;
            runningLong += isLong ? 1 : 0;
            return true;
        }) && !stop;
    }
    void Leave(bool isLong) {
        {
            const std::scoped_lock lock(mutex);
            --running;
            runningLong -= isLong ? 1 : 0;
        }
        changed.notify_all();
    }

    /** The answer of a process. */
    [[nodiscard]] CResult<CWorkerAnswer> Run(EWork work, const CModelInput& input,
                                             const CFileDescriptor* page) {
        const bool isLong = work != EWork::Inspect;
        if (!Enter(isLong))
            return stop ? Stopped() : CError{EErrorCode::Busy, "too many models are being read", {}};
        CResult<CWorkerAnswer> answer = RunNow(work, input, page);
        Leave(isLong);
        return answer;
    }

    COptions options;
    std::atomic<bool> stop = false;
    std::mutex mutex;
    std::condition_variable changed;

  private:
    [[nodiscard]] CResult<CWorkerAnswer> RunNow(EWork work, const CModelInput& input,
                                                const CFileDescriptor* page) const {
        const CResult<CGiven> given = Prepare(work, input, options.folder);
        if (!given) return given.Error();
        CResult<CWorkerProcess> process = CWorkerProcess::Start(
            {options.program, JobOf(work), given.Value().order, given.Value().input, page});
        if (!process) return process.Error();
        const auto outcome =
            process.Value().Wait(CClock::now() + options.patience, worker_order::kMostAnswerBytes, stop);
        if (outcome.end != EEnd::Itself) return WhyItEnded(outcome.end);
        const std::optional<CWorkerAnswer> answer = worker_order::ReadAnswer(work, outcome.answer);
        if (!answer) return WhyItEnded(EEnd::Crashed);
        if (answer->worked == EWorked::Fails) return CError{EErrorCode::Busy, answer->rest, {}};
        return *answer;
    }

    unsigned running = 0, runningLong = 0;
};

CWorkshop::CWorkshop() : CWorkshop(COptions{}) {}

CWorkshop::CWorkshop(COptions options) : m_state(std::make_unique<CState>(std::move(options))) {}

CWorkshop::~CWorkshop() = default;

CResult<CInspected> CWorkshop::Inspect(const CModelInput& input) {
    const CResult<CWorkerAnswer> answer = m_state->Run(EWork::Inspect, input, nullptr);
    if (answer) return CInspected{answer.Value().worked == EWorked::Done, answer.Value().rest};
    const CError& error = answer.Error();
    if (error.code == EErrorCode::BadFormat || error.code == EErrorCode::TooLarge)
        return CInspected{false, error.message};
    return error;
}

CResult<std::vector<std::byte>> CWorkshop::DrawPreview(const CModelInput& input) {
    const CResult<CWorkerAnswer> answer = m_state->Run(EWork::Preview, input, nullptr);
    if (!answer) return answer.Error();
    const std::string& rest = answer.Value().rest;
    if (answer.Value().worked != EWorked::Done) return CError{EErrorCode::BadFormat, rest, {}};
    const auto bytes = std::as_bytes(std::span(rest));
    return std::vector<std::byte>(bytes.begin(), bytes.end());
}

CResult<CMadePage> CWorkshop::MakePage(const CModelInput& input) {
    const CResult<CFileDescriptor> file = unnamed_file::Make(m_state->options.folder);
    if (!file) return file.Error();
    const CResult<CWorkerAnswer> answer = m_state->Run(EWork::Page, input, &file.Value());
    if (!answer) return answer.Error();
    if (answer.Value().worked != EWorked::Done) return CError{EErrorCode::BadFormat, answer.Value().rest, {}};
    CResult<CFileDescriptor> reading = unnamed_file::OpenToRead(file.Value());
    if (!reading) return reading.Error();
    CMadePage page;
    page.bytes = unnamed_file::SizeOf(reading.Value());
    page.file = std::make_shared<const CFileDescriptor>(std::move(reading).Value());
    return page;
}

const std::string& CWorkshop::Folder() const {
    return m_state->options.folder;
}

void CWorkshop::Stop() {
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->stop = true;
    }
    m_state->changed.notify_all();
}
