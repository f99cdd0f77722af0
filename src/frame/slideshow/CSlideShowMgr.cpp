// SPDX-License-Identifier: MIT
#include "frame/slideshow/CSlideShowMgr.h"

namespace {

/** Until the model after one that cannot be opened: the window answers in between. */
constexpr int kPassOverMs = 30;

}  // namespace

void CSlideShowMgr::Start() {
    if (!IsRunning()) m_rounds.Begin();
    m_host.CancelTool();
    m_timer.reset();
    if (m_intervalMs < 1) return;
    Arm(m_intervalMs);
    m_host.ShowButton(EShowButton::Stop);
}

void CSlideShowMgr::Stop() {
    Rest(EShowButton::Start);
}

void CSlideShowMgr::Rest(EShowButton button) {
    m_intervalMs = UsableInterval();
    m_timer.reset();
    m_failures = 0;
    m_host.ShowButton(button);
}

void CSlideShowMgr::Toggle() {
    if (IsRunning())
        Stop();
    else
        Start();
}

void CSlideShowMgr::Rearm() {
    if (!IsRunning()) return;
    m_intervalMs = UsableInterval();
    Start();
}

void CSlideShowMgr::OnModelOpened(int count) {
    m_isTold = true;
    m_failures = 0;
    m_count = count;
    if (IsRunning() && count > 0) return Start();
    Rest(count < 2 ? EShowButton::StartDisabled : EShowButton::Start);
}

void CSlideShowMgr::OnOpenFailed(int count) {
    if (!IsRunning() || count == 0) return OnModelOpened(count);
    m_isTold = true;
    m_count = count;
    if (++m_failures >= count) return End(EShowEnd::NothingOpens);
    Arm(kPassOverMs);
}

void CSlideShowMgr::OnScriptScene(int timeMs, const std::wstring& script, std::size_t index,
                                  std::size_t count, int loop) {
    const bool isOther = m_rounds.Opened(script, index, count, loop);
    m_intervalMs = timeMs > 0 ? timeMs : kDefaultMs;
    if (timeMs > 0 && (isOther || IsRunning())) Start();
}

void CSlideShowMgr::OnTimer() {
    if (!IsRunning()) return;
    if (m_host.IsBusy() || m_host.HoldsStep()) return Arm(UsableInterval());
    if (m_host.HasUnsavedEdits()) return End(EShowEnd::UnsavedEdits);
    if (m_rounds.EndsHere()) return End(EShowEnd::Finished);
    m_isTold = false;
    m_host.ShowNext();
    if (IsRunning() && !m_isTold) End(EShowEnd::NoOther);
}

void CSlideShowMgr::Arm(int periodMs) {
    m_timer.reset();
    m_timer = m_host.StartTimer(periodMs < 1 ? 1 : periodMs);
}

void CSlideShowMgr::End(EShowEnd why) {
    Stop();
    m_host.Tell(why);
}
