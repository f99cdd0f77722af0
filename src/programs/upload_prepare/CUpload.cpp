// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/CUpload.h"

#include <algorithm>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"

using namespace std::chrono_literals;

namespace {

constexpr auto kListSilence = 20s;
constexpr auto kLinkSilence = 60s;
constexpr auto kCopySilence = 120s;  // it tells its progress twice a second
constexpr auto kLongestCopy = 168h;  // it can be cancelled

// The statistics as errors, so that they come whatever level the user's variables choose.
const std::vector<std::string> kCopy{
    "copy",          "--use-json-log", "--stats=500ms",        "--stats-log-level=ERROR", "--contimeout=30s",
    "--timeout=90s", "--retries=2",    "--low-level-retries=5"};

}  // namespace

CUpload::CUpload(CRcloneSetup setup, std::string folder, std::string remoteName)
    : m_setup(std::move(setup)), m_folder(std::move(folder)), m_remoteName(std::move(remoteName)) {
    Look();
}

CUpload::~CUpload() {
    if (m_running) m_running->Kill();
}

void CUpload::Look() {
    m_errors.clear();
    m_whyNoDrive = ENoDrive::NotInstalled;
    if (IsProgramInstalled(m_setup.program))
        Run(EState::Looking, {"listremotes", "--long"}, {}, kListSilence);
    else
        m_state = EState::NoDrive;
}

void CUpload::Unlock(std::string password) {
    if (m_state != EState::NoDrive || m_whyNoDrive != ENoDrive::Locked) return;
    m_setup.password = std::move(password);
    Look();
}

void CUpload::Run(EState state, const std::vector<std::string>& command,
                  const std::vector<std::string>& operands, std::chrono::milliseconds silence) {
    m_state = state;
    CResult<CRclone> started = CRclone::Start(m_setup, command, operands, silence,
                                              state == EState::Copying ? kLongestCopy : 3 * silence);
    if (started) {
        m_running.emplace(std::move(started).Value());
        return;
    }
    Complain(file_util_ex::ConvertToUTF8(lng::Text(started.Error())));
    m_whyNoDrive = ENoDrive::Failed;
    m_state = state == EState::Looking ? EState::NoDrive : EState::Failed;
}

bool CUpload::Poll() {
    if (!m_running) return false;
    const bool hasEnded = m_running->Poll();
    TakeErrors();
    if (!hasEnded) return m_state == EState::Copying;
    if (m_running->WasSilent()) Complain(lng::TextUtf8("rclone does not answer"));
    const CRclone ended = std::move(*m_running);
    m_running.reset();
    if (m_state == EState::Looking)
        TakeRemotes(ended);
    else if (m_state == EState::Copying)
        TakeCopied(ended);
    else if (m_state == EState::Linking)
        TakeAddress(ended);
    return true;
}

void CUpload::TakeErrors() {
    for (const std::string& text : m_running->TakeErrorLines()) {
        const rclone_output::CLine line = rclone_output::ReadLine(text);
        if (line.progress)
            m_progress = *line.progress;
        else if (!line.error.empty())
            Complain(line.error);
    }
}

void CUpload::Complain(std::string line) {
    constexpr std::size_t kMost = 20;
    if (std::ranges::find(m_errors, line) != m_errors.end()) return;
    if (m_errors.size() == kMost) m_errors.erase(m_errors.begin());
    m_errors.push_back(std::move(line));
}

void CUpload::TakeRemotes(const CRclone& ended) {
    m_remotes = rclone_output::RemotesOf(ended.Output(), m_setup.remoteType);
    m_state = m_remotes.empty() ? EState::NoDrive : EState::Ready;
    const auto tellsOfPassword = [](const std::string& line) {
        return line.find("RCLONE_CONFIG_PASS") != line.npos;
    };
    if (ended.HasSucceeded()) {
        m_whyNoDrive = ENoDrive::NoRemote;
        m_errors.clear();  // such as that there is no configuration, which the window says in its own words
    } else {
        m_whyNoDrive = std::ranges::any_of(m_errors, tellsOfPassword) ? ENoDrive::Locked : ENoDrive::Failed;
    }
}

void CUpload::Start(const std::string& remote, bool anybody) {
    const bool mayStart =
        m_state == EState::Ready || m_state == EState::Failed || m_state == EState::Cancelled;
    if (!mayStart || std::ranges::find(m_remotes, remote) == m_remotes.end()) return;
    m_remote = remote;
    m_wantsLink = anybody;
    m_errors.clear();
    m_progress = {};
    Run(EState::Copying, kCopy, {m_folder, m_remote + ':' + RemoteFolder()}, kCopySilence);
}

void CUpload::Cancel() {
    if (m_state != EState::Copying) return;
    m_running->Kill();
    m_running.reset();
    m_state = EState::Cancelled;
}

void CUpload::TakeCopied(const CRclone& ended) {
    if (!ended.HasSucceeded()) {
        m_state = EState::Failed;
        return;
    }
    m_errors.clear();  // what was overcome
    if (m_wantsLink)
        Run(EState::Linking, {"link"}, {m_remote + ':' + RemoteFolder()}, kLinkSilence);
    else
        AskForFolder();
    if (!m_running) m_state = EState::Done;  // without an address
}

void CUpload::AskForFolder() {
    Run(EState::Linking, {"lsjson", "--dirs-only", "--no-modtime"}, {m_remote + ':' + kParent}, kLinkSilence);
}

void CUpload::TakeAddress(const CRclone& ended) {
    m_state = EState::Done;
    if (!m_wantsLink) {
        m_address = rclone_output::FolderAddressIn(ended.Output(), m_remoteName);
        return;
    }
    m_address = rclone_output::AddressIn(ended.Output());
    m_isForAnybody = !m_address.empty();
    if (m_isForAnybody) return;
    m_wantsLink = false;  // at least the user's own address
    AskForFolder();
    if (!m_running) m_state = EState::Done;
}
