// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/run_batch.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <deque>
#include <optional>

#include "base/text/file_uri.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "programs/orbivue_render/CBatchProcess.h"
#include "programs/orbivue_render/CRecords.h"
#include "programs/orbivue_render/CRenderOptions.h"
#include "programs/orbivue_render/batch_lines.h"
#include "programs/orbivue_render/complain.h"
#include "programs/shared/open_input.h"

namespace {

using CClock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{30};  ///< for one file; processor time is limited besides
constexpr std::size_t kMostWaiting = 20'000;   ///< inputs that are read ahead

/** The inputs that are still to be drawn, of the command line or of standard input. */
class CInputs {
  public:
    explicit CInputs(const CRenderOptions& options)
        : m_waiting(options.inputs.begin(), options.inputs.end()),
          m_isOpen(options.inputs.empty()),
          m_records(options.nullSeparated ? '\0' : '\n') {}

    [[nodiscard]] const std::deque<std::string>& Waiting() const { return m_waiting; }
    [[nodiscard]] bool WantsMore() const { return m_isOpen && m_waiting.size() < kMostWaiting; }
    [[nodiscard]] bool IsOpen() const { return m_isOpen; }
    std::string Take() {
        std::string first = std::move(m_waiting.front());
        m_waiting.pop_front();
        return first;
    }
    /** Reads what standard input has; waits where it has nothing. */
    void Read() {
        std::array<char, 1 << 16> buffer{};
        const ssize_t got = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) return;
        m_isOpen = got > 0;
        std::vector<std::string> read =
            got > 0 ? m_records.Add({buffer.data(), static_cast<std::size_t>(got)}) : m_records.End();
        std::ranges::move(read, std::back_inserter(m_waiting));
    }

  private:
    std::deque<std::string> m_waiting;
    bool m_isOpen;
    CRecords m_records;
};

class CBatch {
  public:
    explicit CBatch(const CRenderOptions& options) : m_options(options), m_inputs(options) {}

    int Run() {
        while (m_isSound && (m_drawn || !m_inputs.Waiting().empty() || m_inputs.IsOpen())) {
            if (!m_drawn && !m_inputs.Waiting().empty()) {
                ReadAhead();
                Begin(m_inputs.Take());
            } else {
                Wait();
            }
        }
        return m_isSound ? kDone : Complain(lng::TextUtf8("the results cannot be written"), kCannotWrite);
    }

  private:
    struct CDrawn {
        CBatchItem item;
        CClock::time_point deadline;
    };

    /** Takes all that standard input has at once, so that a new process knows as many folders as can be. */
    void ReadAhead() {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        while (m_inputs.WantsMore() && ::poll(&input, 1, 0) > 0) m_inputs.Read();
    }

    void Begin(std::string input) {
        CBatchItem item{++m_count, std::move(input), {}, {}};
        item.output = file_util_ex::MakePath(m_options.into, std::to_string(item.number) + ".png");
        const CResult<std::string> path = file_uri::PathOfArgument(item.input);
        if (!path) return Tell(batch_lines::Failure(item, path.Error().Text(), EBatchFailure::Lasting));
        item.path = path.Value();
        if (m_process && !CoversAll(item.path)) m_process.reset();
        if (!m_process) Start(item.path);
        if (!m_process || !m_process->Send(item)) {
            m_process.reset();
            return Tell(batch_lines::Failure(item, lng::Mark("no process can be started to draw it"),
                                             EBatchFailure::Passing));
        }
        m_drawn = CDrawn{std::move(item), CClock::now() + kPatience};
    }

    /** A script names files of other folders. */
    [[nodiscard]] bool CoversAll(const std::string& path) const {
        if (!m_process->Covers(path)) return false;
        if (!IsScript(path)) return true;
        const CNamedFiles named = FilesNamedBy(path, m_options.scene);
        const auto isCovered = [this](const std::string& file) { return m_process->Covers(file); };
        return std::ranges::all_of(named.files, isCovered) && std::ranges::all_of(named.models, isCovered);
    }

    void Start(const std::string& path) {
        std::vector<std::string> paths{path};
        for (const std::string& input : m_inputs.Waiting())
            if (const CResult<std::string> next = file_uri::PathOfArgument(input))
                paths.push_back(next.Value());
        m_process = CBatchProcess::Start(m_options, paths);
    }

    /** Until the process answers or ends, standard input has more, or the file's time is over. */
    void Wait() {
        std::array<pollfd, 2> news{pollfd{m_process ? m_process->Answers() : -1, POLLIN, 0},
                                   pollfd{m_inputs.WantsMore() ? STDIN_FILENO : -1, POLLIN, 0}};
        int limit = -1;
        if (m_drawn)
            limit = static_cast<int>(std::max<std::int64_t>(
                std::chrono::ceil<std::chrono::milliseconds>(m_drawn->deadline - CClock::now()).count(), 0));
        if (::poll(news.data(), news.size(), limit) < 0 && errno != EINTR) m_isSound = false;
        if (news[1].revents != 0) m_inputs.Read();
        if (news[0].revents != 0) TakeAnswer();
        if (m_drawn && CClock::now() >= m_drawn->deadline) {
            m_process.reset();
            End(batch_lines::Failure(m_drawn->item, lng::Mark("drawing it takes too long"),
                                     EBatchFailure::Passing));
        }
    }

    void TakeAnswer() {
        const CBatchProcess::CAnswer answer = m_process->ReadAnswer();
        if (answer.state == CBatchProcess::EState::Busy) return;
        if (answer.state == CBatchProcess::EState::Ended) {
            const std::string why = m_process->WhyItEnded();
            m_process.reset();
            // Without a file it was tired, or somebody ended it.
            if (m_drawn) End(batch_lines::Failure(m_drawn->item, why, EBatchFailure::Lasting));
            return;
        }
        if (m_drawn) End(answer.line);
    }

    void End(const std::string& line) {
        m_drawn.reset();
        Tell(line);
    }
    void Tell(const std::string& line) { m_isSound = Print(line) && m_isSound; }

    const CRenderOptions& m_options;
    CInputs m_inputs;
    std::optional<CBatchProcess> m_process;
    std::optional<CDrawn> m_drawn;
    std::size_t m_count = 0;
    bool m_isSound = true;  ///< the results reach somebody
};

}  // namespace

int RunBatch(const CRenderOptions& options) {
    (void)std::signal(SIGPIPE, SIG_IGN);  // an ended process is seen by its answers
    if (!file_util_ex::DoesFolderExist(options.into))
        return Complain(options.into + ": " + lng::TextUtf8("there is no such folder"), kCannotWrite);
    return CBatch(options).Run();
}
