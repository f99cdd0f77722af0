// SPDX-License-Identifier: MIT
#include "frame/preview/ui/CPreviewControl.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>

#include "frame/preview/preview_facts.h"

using CClock = std::chrono::steady_clock;

CPreviewControl::CPreviewControl(GtkFileChooser* chooser, const std::array<std::uint8_t, 3>& background,
                                 CPreviewCache& cache)
    : m_chooser(chooser),
      m_background(background),
      m_pane(background),
      m_process([this](const CPreviewRequest& request, const preview_facts::COutcome& outcome) {
          m_queue.OnEnded(preview_facts::ResultOf(request, outcome), CClock::now());
          SetTimer();
      }),
      m_queue(m_process, m_pane, cache) {
    m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
        m_queue.OnTime(CClock::now());
        SetTimer();
    });
    gtk_file_chooser_set_use_preview_label(chooser, FALSE);
    gtk_file_chooser_set_preview_widget(chooser, m_pane.Widget());
    gtk_file_chooser_set_preview_widget_active(chooser, TRUE);
    g_signal_connect(chooser, "update-preview", G_CALLBACK(OnSelection), this);
}

CPreviewControl::~CPreviewControl() {
    g_signal_handlers_disconnect_by_data(m_chooser, this);
}

void CPreviewControl::OnSelection(GtkFileChooser* chooser, void* data) {
    auto* self = static_cast<CPreviewControl*>(data);
    const std::unique_ptr<char, decltype(&g_free)> path(gtk_file_chooser_get_preview_filename(chooser),
                                                        &g_free);
    const preview_facts::CLook look{CPreviewPane::kSide * self->m_pane.ScaleFactor(), self->m_background};
    self->m_queue.Select(path ? preview_facts::RequestFor(path.get(), look) : std::nullopt, CClock::now());
    self->SetTimer();
}

void CPreviewControl::SetTimer() {
    const std::optional<CPreviewQueue::CTime> next = m_queue.NextTime();
    if (!next) {
        m_timer.Stop();
        return;
    }
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*next - CClock::now()).count();
    m_timer.StartOnce(static_cast<int>(std::clamp<std::int64_t>(wait, 1, 60'000)));
}
