// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/CRclone.h"

#include <deque>
#include <iterator>
#include <utility>

CResult<CRclone> CRclone::Start(const CRcloneSetup& setup, const std::vector<std::string>& command,
                                const std::vector<std::string>& operands, std::chrono::milliseconds silence,
                                std::chrono::milliseconds longest) {
    CProgramToStart what{setup.program, command, {}, true};
    what.arguments.emplace_back("--ask-password=false");
    what.arguments.insert(what.arguments.end(), setup.moreArguments.begin(), setup.moreArguments.end());
    what.arguments.emplace_back("--");
    what.arguments.insert(what.arguments.end(), operands.begin(), operands.end());
    // Others may read a program's arguments, but not its variables.
    if (!setup.password.empty()) what.variables.push_back("RCLONE_CONFIG_PASS=" + setup.password);
    CResult<CStartedProgram> started = StartProgram(what);
    if (!started) return started.Error();
    return CRclone(std::move(started).Value(), silence, longest);
}

CRclone::CRclone(CStartedProgram process, std::chrono::milliseconds silence,
                 std::chrono::milliseconds longest)
    : m_process(std::move(process)), m_silence(silence), m_longest(longest) {}

bool CRclone::Poll() {
    constexpr std::size_t kMostBytes = 4 << 20;
    if (m_exitCode) return true;
    const std::optional<int> ended = m_process.ExitCode();  // first, so that its last words are read
    const std::size_t before = m_output.size() + m_errors.size();
    m_process.ReadOutput(m_output, m_errors, kMostBytes);
    if (m_output.size() + m_errors.size() != before) m_lastWord = CClock::now();
    m_exitCode = ended;
    const CClock::time_point now = CClock::now();
    if (!ended && (now - m_lastWord > m_silence || now - m_begun > m_longest)) {
        m_wasSilent = true;
        Kill();
    }
    return m_exitCode.has_value();
}

std::vector<std::string> CRclone::TakeErrorLines() {
    constexpr std::size_t kMostLines = 200;  // what is read of a flood
    std::deque<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = m_errors.find('\n', begin)) != std::string::npos; begin = end + 1) {
        if (end > begin) lines.push_back(m_errors.substr(begin, end - begin));
        if (lines.size() > kMostLines) lines.pop_front();
    }
    m_errors.erase(0, begin);
    if (m_exitCode && !m_errors.empty()) lines.push_back(std::exchange(m_errors, {}));
    return {std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end())};
}
