// SPDX-License-Identifier: MIT
#include "frame/preview/CPreviewQueue.h"

#include <utility>

#include "base/text/lng.h"
#include "frame/preview/CPreviewCache.h"
#include "frame/preview/CPreviewDisplay.h"
#include "frame/preview/CPreviewWorker.h"

namespace {

CPreviewResult Problem(const char* englishText) {
    CPreviewResult result;
    result.problem = lng::Text(englishText);
    return result;
}

}  // namespace

CPreviewQueue::CPreviewQueue(CPreviewWorker& worker, CPreviewDisplay& display, CPreviewCache& cache)
    : m_worker(worker), m_display(display), m_cache(cache) {}

void CPreviewQueue::Select(const std::optional<CPreviewRequest>& request, CTime now) {
    if (request == m_selected) return;
    m_selected = request;
    m_isShown = true;
    if (m_running && m_running->request != m_selected) KillRunning();
    if (!m_selected) {
        m_display.ShowNothing();
    } else if (const CPreviewResult* known = m_cache.Find(*m_selected)) {
        Show(*known);
    } else if (m_selected->modelPath.empty()) {
        Show(Problem(lng::Mark("This scene script names no model that is there.")));
    } else {
        m_isShown = false;
        m_due = now + kSettle;
        m_display.ShowWaiting(*m_selected);
    }
}

void CPreviewQueue::OnEnded(const CPreviewResult& result, CTime now) {
    if (!m_running) return;
    const CRunning ended = *std::exchange(m_running, std::nullopt);
    if (!ended.killed) {
        m_cache.Add(ended.request, result);
        if (!m_isShown && ended.request == m_selected) Show(result);
    }
    StartIfDue(now);
}

void CPreviewQueue::OnTime(CTime now) {
    if (m_running && !m_running->killed && now >= m_running->deadline) {
        KillRunning();
        // Not cached, because the machine may only have been busy.
        Show(Problem(lng::Mark("Drawing a preview of this file takes too long.")));
    }
    StartIfDue(now);
}

std::optional<CPreviewQueue::CTime> CPreviewQueue::NextTime() const {
    if (m_running) return m_running->killed ? std::nullopt : std::optional(m_running->deadline);
    return m_isShown ? std::nullopt : std::optional(m_due);
}

void CPreviewQueue::StartIfDue(CTime now) {
    if (m_running || m_isShown || now < m_due) return;
    if (m_worker.Start(*m_selected)) {
        m_running = CRunning{*m_selected, now + kPatience};
    } else {
        Show(Problem(lng::Mark("The program that draws previews cannot be started.")));
    }
}

void CPreviewQueue::KillRunning() {
    if (!std::exchange(m_running->killed, true)) m_worker.Kill();
}

void CPreviewQueue::Show(const CPreviewResult& result) {
    m_isShown = true;
    m_display.ShowResult(*m_selected, result);
}
