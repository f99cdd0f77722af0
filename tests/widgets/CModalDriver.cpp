// SPDX-License-Identifier: MIT
#include "widgets/CModalDriver.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/dialog.h>
#include <wx/evtloop.h>
#include <wx/filedlg.h>
#include <wx/uiaction.h>
#include <wx/utils.h>

#include <optional>

namespace {

constexpr long kLimitMs = 20'000;
constexpr int kPeriodMs = 20;

CModalDriver* current = nullptr;

}  // namespace

CModalDriver::CModalDriver(std::deque<CStep> steps) : m_steps(std::move(steps)) {
    current = this;
    m_dialogs.Register();
    m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTick(); });
    m_timer.Start(kPeriodMs);
}

CModalDriver::~CModalDriver() {
    current = nullptr;
}

void CModalDriver::OnTick() {
    if (m_isInStep) return;  // a step may serve events itself
    if (m_watch.Time() > kLimitMs) {
        if (wxDialog* dialog = m_dialogs.Last()) dialog->EndModal(wxID_CANCEL);
        return;
    }
    if (m_steps.empty()) return;  // the last one should have closed the dialog
    m_isInStep = true;
    const bool isDone = m_steps.front()();
    m_isInStep = false;
    if (!isDone) return;
    m_steps.pop_front();
    m_watch.Start();
}

void CModalDriver::ShowFirst(wxTopLevelWindow& frame) {
    frame.Show();
    ASSERT_TRUE(WaitFor(
        [&] { return frame.IsShownOnScreen() && gtk_window_is_active(GTK_WINDOW(frame.GetHandle())); }));
}

bool CModalDriver::WaitFor(const std::function<bool()>& condition) {
    const wxStopWatch watch;
    while (!condition()) {
        if (watch.Time() > kLimitMs) return false;
        wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);
        wxMilliSleep(2);
    }
    return true;
}

wxDialog* CModalDriver::Dialog() {
    wxDialog* dialog = current ? current->m_dialogs.Last() : nullptr;
    return dialog && gtk_window_is_active(GTK_WINDOW(dialog->GetHandle())) ? dialog : nullptr;
}

wxFileDialog* CModalDriver::FileDialog() {
    return dynamic_cast<wxFileDialog*>(Dialog());
}

CModalDriver::CStep CModalDriver::With(const std::function<void(wxDialog&)>& work) {
    return [work] {
        if (wxDialog* dialog = Dialog()) return work(*dialog), true;
        return false;
    };
}

CModalDriver::CStep CModalDriver::Click(int id) {
    return With([id](wxDialog& dialog) {
        wxQueueEvent(dialog.FindWindow(id), new wxCommandEvent(wxEVT_BUTTON, id));
    });
}

CModalDriver::CStep CModalDriver::Press(int key) {
    return [key] {
        wxUIActionSimulator().Char(key);
        return true;
    };
}

CModalDriver::CStep CModalDriver::PressUntil(int key, const std::function<bool()>& condition) {
    return [key, condition, watch = std::optional<wxStopWatch>()]() mutable {
        if (condition()) return true;
        if (watch && watch->Time() < kLimitMs / 10) return false;
        watch.emplace();
        wxUIActionSimulator().Char(key);
        return false;
    };
}
