// SPDX-License-Identifier: MIT
#include "frame/ui/CSceneStatusBar.h"

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/wupdlock.h>

#include <array>
#include <utility>

#include "base/text/lng.h"
#include "widgets/access/ui/focus.h"
#include "widgets/ui/accessible_name.h"

CSceneStatusBar::CSceneStatusBar(wxWindow* parent, std::function<void()> showNotes)
    : wxStatusBar(parent, wxID_ANY, wxSTB_DEFAULT_STYLE),
      m_access(*this, EAccessibleRole::StatusBar,
               {[] { return kTextFields.size(); },
                [this](std::size_t index) { return Described(kTextFields[index]); }, nullptr, nullptr}),
      m_gauge(new wxGauge(this, wxID_ANY, 100)),
      m_notes(new wxButton(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                           wxBORDER_NONE | wxBU_EXACTFIT)) {
    SetFieldsCount(kFieldCount);
    SetAccessibleName(*this, lng::Text("Status bar"));
    SetAccessibleName(*m_gauge, lng::Text("Progress of opening"));
    m_gauge->Hide();
    m_notes->SetToolTip(lng::Text("Show what was noticed about this model"));
    m_notes->Hide();
    KeepFocusOnClick(*m_notes);
    m_notes->Bind(wxEVT_BUTTON, [this, show = std::move(showNotes)](wxCommandEvent&) {
        CallAfter(show);  // a screen reader waits until the press has been taken
    });
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        PlaceChildren();
        event.Skip();
    });
    FitFields({});
}

void CSceneStatusBar::Put(EField field, const std::wstring& text) {
    SetStatusText(text, field);
    m_access.Changed();
}

CDrawnItem CSceneStatusBar::Described(EField field) const {
    wxRect place;
    (void)GetFieldRect(field, place);  // before the first layout there is none
    return {.role = EAccessibleRole::Label, .name = GetStatusText(field).ToStdWstring(), .place = place};
}

void CSceneStatusBar::ShowMessage(const std::wstring& text) {
    m_message = text;
    Put(kMessage, text);
}

void CSceneStatusBar::ShowHelp(const std::wstring& text) {
    Put(kMessage, text.empty() ? m_message : text);
}

void CSceneStatusBar::ShowScene(const CSceneSummary& summary) {
    const wxWindowUpdateLocker once(this);  // the toolkit would paint each text at once
    // A message that is about to disappear must not be cut off.
    for (const EField field : {kPlace, kTriangles, kObjects}) SetStatusText(wxEmptyString, field);
    m_notes->SetLabel(summary.notes);
    SetAccessibleName(*m_notes, summary.notes);
    m_notes->Show(!summary.notes.empty());
    FitFields(summary);  // first, as a text is drawn at once
    Put(kPlace, summary.place);
    Put(kTriangles, summary.triangles);
    Put(kObjects, summary.objects);
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
