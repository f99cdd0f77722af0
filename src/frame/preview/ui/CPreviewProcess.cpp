// SPDX-License-Identifier: MIT
#include "frame/preview/ui/CPreviewProcess.h"

#include <utility>

#include "files/file_util_ex.h"
#include "files/std_file_paths.h"

namespace {

constexpr int kPipePeriodMs = 25;
constexpr std::size_t kMaxTextBytes = 4 << 20;

std::string BackgroundText(const CPreviewRequest& request) {
    const auto& [red, green, blue] = request.background;
    return std::to_string(red) + "," + std::to_string(green) + "," + std::to_string(blue);
}

}  // namespace

CPreviewProcess::CPreviewProcess(CEnded ended)
    : m_ended(std::move(ended)), m_folder(std_file_paths::GetTempFilePath("open-preview")) {
    m_pipeTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { LookAfterChild(); });
}

CPreviewProcess::~CPreviewProcess() {
    Kill();
    file_util_ex::Rmdir(m_folder);
}

bool CPreviewProcess::Start(const CPreviewRequest& request) {
    const std::string program = std_file_paths::GetProgramFolderPath() + "/orbivue-render";
    if (!file_util_ex::DoesFileExist(program) || !file_util_ex::Mkdir(m_folder)) return false;
    file_util_ex::DeleteFileW(PicturePath());
    const std::string side = std::to_string(request.sidePx);
    const std::string size = side + "x" + side;
    const std::string folder = file_util_ex::GetFilePath(request.modelPath);
    CResult<CStartedProgram> started =
        StartProgram({program,
                      {"--confined", "--stats", "--size", size, "--background", BackgroundText(request), "--",
                       request.modelPath, PicturePath()},
                      folder,
                      true});
    if (!started) return false;
    m_child.emplace(std::move(started.Value()));
    m_request = request;
    m_outcome = {0, {}, {}, PicturePath()};
    m_pipeTimer.Start(kPipePeriodMs);
    return true;
}

void CPreviewProcess::Kill() {
    if (m_child) m_child->Kill();
}

void CPreviewProcess::LookAfterChild() {
    if (!m_child) return;
    const std::optional<int> exitCode = m_child->ExitCode();  // first, so that its last words are read
    m_child->ReadOutput(m_outcome.output, m_outcome.errors, kMaxTextBytes);
    if (!exitCode) return;
    m_pipeTimer.Stop();
    m_child.reset();
    m_outcome.exitCode = *exitCode;
    m_ended(m_request, m_outcome);
}
