// SPDX-License-Identifier: MIT
#include "frame/model_list/ui/CPictureBatch.h"

#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"

namespace {

constexpr int kLookPeriodMs = 20;
constexpr int kRestMs = 3000;  ///< without work, until the process ends
constexpr std::size_t kMostOutputBytes = 1 << 20;

}  // namespace

CPictureBatch::CPictureBatch(int sidePx, CEnded ended)
    : m_sidePx(sidePx),
      m_ended(std::move(ended)),
      m_folder(std_file_paths::GetTempFilePath("list-pictures")) {
    m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { LookAfterProcess(); });
}

CPictureBatch::~CPictureBatch() {
    Stop();
    file_util_ex::Rmdir(m_folder);
}

void CPictureBatch::Draw(const std::wstring& path) {
    if (!m_process && m_underWay.empty() && !Start()) m_process.reset();
    if (m_process && !Send(path)) m_process->Kill();
    ++m_lastNumber;
    m_underWay.push_back(path);
    m_idleMs = 0;
    if (!m_timer.IsRunning()) m_timer.Start(kLookPeriodMs);
}

void CPictureBatch::Stop() {
    m_timer.Stop();
    if (m_process) m_process->Kill();
    m_process.reset();
    m_underWay.clear();
}

bool CPictureBatch::Start() {
    const std::string program = std_file_paths::GetProgramFolderPath() + "/orbivue-render";
    if (!file_util_ex::DoesFileExist(program) || !file_util_ex::Mkdir(m_folder)) return false;
    const std::string side = std::to_string(m_sidePx);
    CProgramToStart what{
        program, {"--batch", "--null", "--size", side + "x" + side, "--into", m_folder}, m_folder, true};
    what.takesInput = what.isLast = true;
    CResult<CStartedProgram> started = StartProgram(what);
    if (!started) return false;
    m_process.emplace(std::move(started).Value());
    m_lastNumber = 0;
    m_output.clear();
    m_errors.clear();
    return true;
}

bool CPictureBatch::Send(const std::wstring& path) {
    std::string record = file_util_ex::ConvertToUTF8(path);
    record += '\0';
    constexpr std::size_t kMostBytes = 4096;
    return record.size() <= kMostBytes && m_process->WriteInput(record);
}

void CPictureBatch::LookAfterProcess() {
    if (!m_process) return FailAll();
    const std::optional<int> exitCode = m_process->ExitCode();  // first, so that its last words are read
    m_process->ReadOutput(m_output, m_errors, kMostOutputBytes);
    TakeAnswers();
    if (exitCode && m_process) {
        m_process.reset();
        FailAll();
    }
    m_idleMs = m_underWay.empty() ? m_idleMs + kLookPeriodMs : 0;
    if (m_idleMs >= kRestMs) Stop();
}

/** An answer may begin new drawings, or stop all. */
void CPictureBatch::TakeAnswers() {
    for (std::size_t end = 0; !m_underWay.empty() && (end = m_output.find('\n')) != std::string::npos;) {
        const std::optional<CBatchAnswer> answer = ReadBatchAnswer(std::string_view(m_output).substr(0, end));
        m_output.erase(0, end + 1);
        const std::size_t expected = m_lastNumber - m_underWay.size() + 1;
        if (!answer || answer->number != expected) continue;
        CDrawn drawn{std::move(m_underWay.front()), *answer, {}};
        m_underWay.pop_front();
        drawn.pngPath = file_util_ex::MakePath(m_folder, std::to_string(expected) + ".png");
        m_ended(drawn);
    }
}

void CPictureBatch::FailAll() {
    m_timer.Stop();
    const std::deque<std::wstring> failed = std::exchange(m_underWay, {});
    for (const std::wstring& path : failed)
        m_ended({path, {0, lng::Mark("The program that draws previews cannot be started."), true}, {}});
}
