// SPDX-License-Identifier: MIT
#include "modeldb/ui/CModelSearch.h"

#include <utility>

#include "modeldb/transfer/ui/CSearchModelsThread.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/transfer/ui/transfer_events.h"

namespace {

constexpr int kRestMs = 250;

}  // namespace

CModelSearch::CModelSearch(CAnswered answered) : m_answered(std::move(answered)) {
    m_delay.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Ask(); });
    Bind(wxEVT_MY_CUSTOM_COMMAND, &CModelSearch::OnAnswer, this);
}

CModelSearch::~CModelSearch() {
    if (!m_thread) return;
    m_thread->StartKill();
    m_thread->Wait();
}

void CModelSearch::SearchFor(std::string text) {
    m_text = std::move(text);
    if (m_thread) m_thread->StartKill();  // its answer is not wanted any more; the next question follows it
    m_delay.Stop();
    if (!m_text.empty()) m_delay.StartOnce(kRestMs);
}

void CModelSearch::Ask() {
    if (m_thread || m_text.empty()) return;
    m_thread = std::make_unique<CSearchModelsThread>(this, wxEVT_MY_CUSTOM_COMMAND, m_text);
    if (!m_thread->RunThread()) m_thread.reset();
}

void CModelSearch::OnAnswer(wxGUIThreadEvent& event) {
    const auto found = event.Take<CFoundData>();
    const bool wasKilled = !m_thread->wxGUIThread::DoContinue();
    m_thread->Wait();
    m_thread.reset();
    if (!wasKilled)
        m_answered(*found);
    else if (!m_delay.IsRunning())
        Ask();
}
