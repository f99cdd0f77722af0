// SPDX-License-Identifier: MIT
#include "frame/preview/ui/CPreviewProcess.h"

#include <wx/process.h>
#include <wx/stream.h>
#include <wx/utils.h>

#include <array>
#include <utility>

#include "files/file_util_ex.h"
#include "files/std_file_paths.h"

namespace {

constexpr int kPipePeriodMs = 50;
constexpr unsigned kLowPriority = 70;  // of 100; 50 is ours
constexpr std::size_t kMaxTextBytes = 4 << 20;

// Reads what is there, and waits for nothing.
void Read(wxInputStream* from, std::string& into) {
    std::array<char, 4096> buffer;
    while (from && from->CanRead() && from->Read(buffer.data(), buffer.size()).LastRead() > 0) {
        if (into.size() < kMaxTextBytes) into.append(buffer.data(), from->LastRead());
    }
}

std::string BackgroundText(const CPreviewRequest& request) {
    const auto& [red, green, blue] = request.background;
    return std::to_string(red) + "," + std::to_string(green) + "," + std::to_string(blue);
}

}  // namespace

class CPreviewProcess::CChild final : public wxProcess {
  public:
    explicit CChild(CPreviewProcess& owner) : wxProcess(wxPROCESS_REDIRECT), m_owner(&owner) {}
    void Leave() { m_owner = nullptr; }
    void OnTerminate(int, int status) override {
        if (m_owner) m_owner->OnChildEnded(status);
        delete this;
    }

  private:
    CPreviewProcess* m_owner;
};

CPreviewProcess::CPreviewProcess(CEnded ended)
    : m_ended(std::move(ended)), m_folder(std_file_paths::GetTempFilePath("open-preview")) {
    m_pipeTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { ReadPipes(); });
}

CPreviewProcess::~CPreviewProcess() {
    Kill();
    if (m_child) m_child->Leave();
    file_util_ex::Rmdir(m_folder);
}

bool CPreviewProcess::Start(const CPreviewRequest& request) {
    const std::string program = std_file_paths::GetAppFolderPath() + "/orbivue-render";
    if (!file_util_ex::DoesFileExist(program) || !file_util_ex::Mkdir(m_folder)) return false;
    file_util_ex::DeleteFileW(PicturePath());
    const std::string side = std::to_string(request.sidePx);
    const std::string size = side + "x" + side;
    const std::string background = BackgroundText(request);
    const std::string picture = PicturePath();
    const std::array<const char*, 9> arguments = {program.c_str(),
                                                  "--stats",
                                                  "--size",
                                                  size.c_str(),
                                                  "--background",
                                                  background.c_str(),
                                                  request.modelPath.c_str(),
                                                  picture.c_str(),
                                                  nullptr};
    auto child = std::make_unique<CChild>(*this);
    child->SetPriority(kLowPriority);
    m_pid = wxExecute(arguments.data(), wxEXEC_ASYNC, child.get());
    if (m_pid <= 0) return false;
    m_child = child.release();
    m_child->CloseOutput();
    m_request = request;
    m_outcome = {0, {}, {}, picture};
    m_pipeTimer.Start(kPipePeriodMs);
    return true;
}

void CPreviewProcess::Kill() {
    if (m_child) wxProcess::Kill(static_cast<int>(m_pid), wxSIGKILL);
}

void CPreviewProcess::ReadPipes() {
    if (!m_child) return;
    Read(m_child->GetInputStream(), m_outcome.output);
    Read(m_child->GetErrorStream(), m_outcome.errors);
}

void CPreviewProcess::OnChildEnded(int exitCode) {
    m_pipeTimer.Stop();
    ReadPipes();
    m_child = nullptr;
    m_outcome.exitCode = exitCode;
    m_ended(m_request, m_outcome);
}
