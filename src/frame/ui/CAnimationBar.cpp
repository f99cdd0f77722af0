// SPDX-License-Identifier: MIT
#include "frame/ui/CAnimationBar.h"

#include <wx/bmpbuttn.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/stattext.h>

#include <algorithm>
#include <utility>

#include "base/text/lng.h"
#include "widgets/access/ui/focus.h"
#include "widgets/tools/ui/tool_icon.h"
#include "widgets/ui/accessible_name.h"

CAnimationBar::CAnimationBar(wxWindow* parent, CActions actions)
    : wxPanel(parent),
      m_actions(std::move(actions)),
      m_play(new wxBitmapButton(this, wxID_ANY, LoadIcon("play.ico"))),
      m_slider(new wxSlider(this, wxID_ANY, 0, 0, 1)),
      m_text(new wxStaticText(this, wxID_ANY, wxEmptyString)) {
    SetAccessibleName(*this, lng::Text("Animation"));
    // Time runs to the right, as in every player.
    m_slider->SetLayoutDirection(wxLayout_LeftToRight);
    SetAccessibleName(*m_slider, lng::Text("Frame of the animation"));
    KeepFocusOnClick(*m_play);  // so that Space goes on to the next model
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const wxSizerFlags centred = wxSizerFlags().CenterVertical().Border(wxLEFT | wxRIGHT, FromDIP(6));
    row->Add(m_play, centred);
    row->Add(m_slider, wxSizerFlags(1).CenterVertical());
    row->Add(m_text, centred);
    SetSizerAndFit(row);
    m_play->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { m_actions.setPlaying(!m_playing); });
    m_slider->Bind(wxEVT_SLIDER, [this](wxCommandEvent& event) {
        ShowText(event.GetInt());
        m_actions.setFrame(event.GetInt());
    });
    ShowPlaying(false);
}

void CAnimationBar::SetRange(int first, int last) {
    m_slider->SetRange(first, std::max(first + 1, last));
    m_text->SetMinSize({GetTextExtent(lng::Text("Frame %s", std::to_wstring(last) + L"  ")).x, -1});
    Layout();
}

void CAnimationBar::ShowFrame(int frame) {
    m_slider->SetValue(frame);
    ShowText(frame);
}

void CAnimationBar::ShowPlaying(bool playing) {
    m_playing = playing;
    TellValues(*m_slider, !playing);
    const wxString label = playing ? lng::Text("Pause") : lng::Text("Play");
    m_play->SetBitmap(LoadIcon(playing ? "pause.ico" : "play.ico"));
    m_play->SetToolTip(label);
    SetAccessibleName(*m_play, label.ToStdWstring());
}

void CAnimationBar::TakeFocus() {
    m_play->SetFocus();
}

void CAnimationBar::ShowText(int frame) {
    m_text->SetLabel(lng::Text("Frame %s", std::to_wstring(frame)));
}
