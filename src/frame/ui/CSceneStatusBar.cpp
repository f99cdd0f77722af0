// SPDX-License-Identifier: MIT
#include "frame/ui/CSceneStatusBar.h"

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/wupdlock.h>

#include <array>
#include <utility>

#include "base/text/lng.h"
#include "widgets/ui/accessible_name.h"

CSceneStatusBar::CSceneStatusBar(wxWindow* parent, std::function<void()> showNotes)
    : wxStatusBar(parent, wxID_ANY, wxSTB_DEFAULT_STYLE),
      m_gauge(new wxGauge(this, wxID_ANY, 100)),
      m_notes(new wxButton(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                           wxBORDER_NONE | wxBU_EXACTFIT)) {
    SetFieldsCount(kFieldCount);
    SetAccessibleName(*m_gauge, lng::Text("Progress of opening"));
    m_gauge->Hide();
    m_notes->SetToolTip(lng::Text("Show what was noticed about this model"));
    m_notes->Hide();
    m_notes->Bind(wxEVT_BUTTON, [show = std::move(showNotes)](wxCommandEvent&) { show(); });
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        PlaceChildren();
        event.Skip();
    });
    FitFields({});
}

void CSceneStatusBar::ShowMessage(const std::wstring& text) {
    m_message = text;
    SetStatusText(text, kMessage);
}

void CSceneStatusBar::ShowHelp(const std::wstring& text) {
    SetStatusText(text.empty() ? m_message : text, kMessage);
}

void CSceneStatusBar::ShowScene(const CSceneSummary& summary) {
    const wxWindowUpdateLocker once(this);  // the toolkit would paint each text at once
    // A message that is about to disappear must not be cut off.
    for (const EField field : {kPlace, kTriangles, kObjects}) SetStatusText(wxEmptyString, field);
    m_notes->SetLabel(summary.notes);
    m_notes->Show(!summary.notes.empty());
    FitFields(summary);  // first, as a text is drawn at once
    SetStatusText(summary.place, kPlace);
    SetStatusText(summary.triangles, kTriangles);
    SetStatusText(summary.objects, kObjects);
}

void CSceneStatusBar::ShowProgress(const CProgressText& progress) {
    ShowMessage(progress.text);
    if (progress.percent < 0)
        m_gauge->Pulse();
    else
        m_gauge->SetValue(progress.percent);
    if (!m_gauge->IsShown()) {
        m_gauge->Show();
        PlaceChildren();
    }
}

void CSceneStatusBar::EndProgress() {
    m_gauge->Hide();
    ShowMessage({});
}

/** Each field as wide as its text. */
void CSceneStatusBar::FitFields(const CSceneSummary& summary) {
    const int margin = FromDIP(20);
    const auto width = [&](const wxString& text) { return GetTextExtent(text).x + margin; };
    const std::array<int, kFieldCount> widths{
        -1,
        FromDIP(140),
        width(summary.place),
        width(summary.triangles),
        width(summary.objects),
        m_notes->IsShown() ? m_notes->GetBestSize().x + margin : FromDIP(16)};
    SetStatusWidths(kFieldCount, widths.data());
    PlaceChildren();
}

void CSceneStatusBar::PlaceChildren() {
    const auto put = [this](wxWindow& child, EField field, int border) {
        wxRect place;
        if (!GetFieldRect(field, place)) return;
        place.Deflate(border);
        if (place.width > 0 && place.height > 0) child.SetSize(place);  // empty before the first layout
    };
    put(*m_gauge, kGauge, FromDIP(2));
    put(*m_notes, kNotes, 0);
}
