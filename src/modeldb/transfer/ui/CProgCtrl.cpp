// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/CProgCtrl.h"

#include <gtk/gtk.h>

#include <algorithm>

namespace {

constexpr int kFirstRange = 50;
constexpr int kWidth = 180, kHeight = 30;

}  // namespace

CProgCtrl::CProgCtrl(wxWindow* parent)
    : wxGauge(parent, wxID_ANY, kFirstRange, wxDefaultPosition, parent->FromDIP(wxSize(kWidth, kHeight)),
              wxGA_HORIZONTAL | wxGA_SMOOTH | wxBORDER_NONE),
      m_timer(this) {
    SetValue(0);
    Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTimer(); });
}

void CProgCtrl::SetDeterminate() {
    m_isDeterminate = true;
    m_timer.Stop();
}

void CProgCtrl::OnProgressStart(std::int64_t total) {
    if (total == 0) return;
    SetDeterminate();
    // The toolkit counts by int, and needs a range: what the low bits say beyond it is one step.
    SetRange(std::max(static_cast<std::int32_t>(total), 1));
    m_steps = 0;
    SetValue(0);
}

void CProgCtrl::OnProgressStep() {
    if (m_steps < GetRange()) ++m_steps;  // a server may send more than it has announced
    SetValue(m_steps);
    // What follows a transfer may keep the toolkit from drawing the last step.
    if (m_steps == GetRange()) CallAfter([this] { gtk_widget_queue_resize(GetHandle()); });
}

double CProgCtrl::Percent() const {
    return 100.0 * GetValue() / GetRange();
}

void CProgCtrl::OnTimer() {
    if (m_isDeterminate)
        m_timer.Stop();
    else
        Pulse();
}
