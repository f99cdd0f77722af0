// SPDX-License-Identifier: MIT
#include "export/ui/CPovExportProgCtrl.h"

#include <wx/evtloop.h>

#include <algorithm>

namespace {

constexpr int kStartRange = 50;

}  // namespace

CPovExportProgCtrl::CPovExportProgCtrl(wxWindow* parent)
    : wxGauge(parent, wxID_ANY, kStartRange, wxDefaultPosition, parent->FromDIP(wxSize(500, 30)),
              wxGA_HORIZONTAL | wxGA_SMOOTH | wxBORDER_NONE) {
    SetValue(0);
}

void CPovExportProgCtrl::Begin(unsigned total) {
    m_position = 0;
    m_total = std::max(total, 1U);
    SetRange(static_cast<int>(m_total));
    SetValue(0);
    ShowNow();
}

void CPovExportProgCtrl::Step() {
    ++m_position;
    SetValue(static_cast<int>(std::min(m_position, m_total)));
    if (CClock::now() >= m_nextShow) ShowNow();
}

void CPovExportProgCtrl::Complete() {
    SetValue(static_cast<int>(m_total));
}

void CPovExportProgCtrl::ShowNow() {
    using namespace std::chrono_literals;
    // Events are served for a while only: the view may be turning, and then there is always one more.
    constexpr auto kLongest = 30ms;
    const auto start = CClock::now();
    wxEventLoopBase* loop = wxEventLoopBase::GetActive();
    while (loop && loop->Pending() && CClock::now() < start + kLongest) loop->Dispatch();
    const auto end = CClock::now();
    // A view that takes long to draw must not take the time of the export.
    m_nextShow = end + std::max<CClock::duration>(20ms, 2 * (end - start));
}
