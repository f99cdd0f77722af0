// SPDX-License-Identifier: MIT
#include "export/pov/ui/CPovExportProgCtrl.h"

#include <gtk/gtk.h>
#include <wx/evtloop.h>

#include <algorithm>

namespace {

constexpr int kStartRange = 50;
constexpr std::chrono::milliseconds kRepaintLimit(50);

/** Themes draw a hairline, whatever the height; this bar fills its own. */
void FillHeight(GtkWidget* bar) {
    GtkCssProvider* style = gtk_css_provider_new();
    gtk_css_provider_load_from_data(style, "trough, progress { min-height: 26px; }", -1, nullptr);
    gtk_style_context_add_provider(gtk_widget_get_style_context(bar), GTK_STYLE_PROVIDER(style),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(style);
}

gboolean OnDrawn(GtkWidget*, cairo_t*, bool* isDrawn) {
    *isDrawn = true;
    return FALSE;
}

}  // namespace

CPovExportProgCtrl::CPovExportProgCtrl(wxWindow* parent)
    : wxGauge(parent, wxID_ANY, kStartRange, wxDefaultPosition, parent->FromDIP(wxSize(500, 30)),
              wxGA_HORIZONTAL | wxGA_SMOOTH | wxBORDER_NONE) {
    FillHeight(GetHandle());
    g_signal_connect_after(GetHandle(), "draw", G_CALLBACK(OnDrawn), &m_isDrawn);
    SetValue(0);
}

void CPovExportProgCtrl::Begin(unsigned total) {
    m_position = 0;
    m_total = std::max(total, 1U);
    SetRange(static_cast<int>(m_total));
    SetValue(0);
    ShowNow(kRepaintLimit);
}

void CPovExportProgCtrl::Step() {
    ++m_position;
    SetValue(static_cast<int>(std::min(m_position, m_total)));
    if (CClock::now() >= m_nextShow) ShowNow(kRepaintLimit);
}

void CPovExportProgCtrl::Complete() {
    if (m_total > 0) SetValue(static_cast<int>(m_total));
    ShowNow(kRepaintLimit);
}

void CPovExportProgCtrl::ShowNow(std::chrono::milliseconds limit) {
    using namespace std::chrono_literals;
    constexpr unsigned long kPauseMs = 5;
    const auto start = CClock::now();
    wxEventLoopBase* loop = wxEventLoopBase::GetActive();
    if (!loop) return;
    m_isDrawn = false;
    Refresh();
    // Drawing comes after all other events, and new events may keep coming; so this waits for drawing only up
    // to limit.
    while ((!m_isDrawn || loop->Pending()) && CClock::now() < start + limit) loop->DispatchTimeout(kPauseMs);
    gdk_display_flush(gtk_widget_get_display(GetHandle()));
    const auto end = CClock::now();
    // If painting is slow, the export must still get most of the time.
    m_nextShow = end + std::max<CClock::duration>(50ms, 4 * (end - start));
}
