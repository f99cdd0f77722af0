// SPDX-License-Identifier: MIT
#include "update/ui/CUpdateChecks.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/toplevel.h>

#include <chrono>
#include <utility>

#include "base/text/utf8_text.h"
#include "update/kept_choices.h"
#include "update/ui/CUpdateBar.h"
#include "update/ui/CUpdateNewsDlg.h"
#include "update/ui/CUpdateProgressDlg.h"
#include "update/update_feed.h"
#include "widgets/CUserPrompt.h"

namespace {

constexpr int kLookAgainMs = 250;      ///< whether a check has ended
constexpr int kUntilRestedMs = 2'000;  ///< where the program is at work, or a bar would be in the way

/** Something is being opened, or exported: keys and the mouse wait (RunJob). */
bool IsAtWork() {
    const wxEventLoopBase* loop = wxEventLoopBase::GetActive();
    return loop == nullptr ||
           (loop->IsYielding() && !loop->IsEventAllowedInsideYield(wxEVT_CATEGORY_USER_INPUT));
}

wxTopLevelWindow* MainWindow() {
    return dynamic_cast<wxTopLevelWindow*>(wxTheApp->GetTopWindow());
}

}  // namespace

CUpdateChecks::CUpdateChecks(CHoldForWindow hold, int quietMs) : m_hold(std::move(hold)), m_quietMs(quietMs) {
    m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTick(); });
}

CUpdateChecks::~CUpdateChecks() = default;

void CUpdateChecks::OnStarted(const CUpdateDetails& details) {
    const std::string version = file_util_ex::ConvertToUTF8(details.version);
    m_version = details.version;
    m_target = CUpdateTarget::Here(version);
    m_request.address = details.feed;
    m_request.agent = file_util_ex::ConvertToUTF8(details.program) + "/" + version;
    if (details.isAutomatic && !IsPackaged() && !details.feed.empty()) m_timer.StartOnce(m_quietMs);
}

void CUpdateChecks::OnEnded() {
    m_timer.Stop();
    m_job.reset();
}

void CUpdateChecks::OnTick() {
    if (m_job && !m_job->HasEndedWithin(std::chrono::milliseconds(0)))
        m_timer.StartOnce(kLookAgainMs);
    else if (IsAtWork() || m_isModal)
        m_timer.StartOnce(kUntilRestedMs);
    else if (m_job)
        EndUnasked();
    else
        BeginUnasked();
}

/** Only with a note of it, or it would be made at each start. */
void CUpdateChecks::BeginUnasked() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    if (!kept_choices::TakeTurn(std::chrono::duration_cast<std::chrono::seconds>(now).count())) return;
    m_job = std::make_unique<CJob>([this](CJobProgress& progress) {
        m_outcome = CheckForUpdate(m_request, m_target, progress.CancelFlag());
    });
    m_timer.StartOnce(kLookAgainMs);
}

void CUpdateChecks::EndUnasked() {
    const wxTopLevelWindow* window = MainWindow();
    if (window != nullptr && window->IsFullScreen()) {
        m_timer.StartOnce(kUntilRestedMs);
        return;
    }
    m_job.reset();
    const bool isNews = m_outcome.kind == EUpdateOutcome::News && !kept_choices::IsSkipped(m_outcome.item);
    if (isNews && window != nullptr) ShowBar();
}

void CUpdateChecks::ShowBar() {
    CloseBar();
    const auto show = [this] {
        CloseBar();
        ShowNews(m_outcome);
    };
    const auto showMore = [this, show] {
        if (m_isModal) return;
        m_hold ? m_hold(show) : show();
    };
    m_bar = new CUpdateBar(*MainWindow(), m_outcome.item.shownVersion, {showMore, [this] { CloseBar(); }});
}

void CUpdateChecks::CloseBar() {
    if (m_bar) m_bar->Leave();
    m_bar = nullptr;
}

void CUpdateChecks::ShowNews(const CUpdateOutcome& outcome) {
    const CAppcastItem item = outcome.item;
    m_isModal = true;
    CUpdateNewsDlg dialog(wxTheApp->GetTopWindow(), SentenceOf(outcome, m_version, IsPackaged()), item);
    const int answer = dialog.ShowModal();
    m_isModal = false;
    if (answer == CUpdateNewsDlg::kSkip) kept_choices::Skip(item);
    if (answer == CUpdateNewsDlg::kGet) OpenUpdatePage(item.page);
}

void CUpdateChecks::CheckWithWindows() {
    if (m_isModal) return;
    if (m_job) m_timer.Stop();
    m_job.reset();
    CUpdateOutcome outcome;
    if (!m_request.address.empty()) {
        m_isModal = true;
        CUpdateProgressDlg dialog(wxTheApp->GetTopWindow(), [&](CJobProgress& progress) {
            outcome = CheckForUpdate(m_request, m_target, progress.CancelFlag());
        });
        const bool hasEnded = dialog.ShowModal() == wxID_OK;
        m_isModal = false;
        if (!hasEnded) return;
    }
    if (outcome.kind == EUpdateOutcome::News) {
        CloseBar();
        ShowNews(outcome);
    } else if (outcome.kind == EUpdateOutcome::Failed) {
        CUserPrompt::Instance().ShowWarning(SentenceOf(outcome, m_version, IsPackaged()));
    } else {
        CUserPrompt::Instance().ShowMessage(SentenceOf(outcome, m_version, IsPackaged()));
    }
}
