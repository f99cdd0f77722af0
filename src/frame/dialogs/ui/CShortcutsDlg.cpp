// SPDX-License-Identifier: MIT
#include "frame/dialogs/ui/CShortcutsDlg.h"

#include <wx/display.h>
#include <wx/frame.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/weakref.h>

#include <algorithm>

#include "base/text/lng.h"
#include "frame/dialogs/ui/CShortcutList.h"
#include "frame/dialogs/ui/dialog_buttons.h"
#include "frame/dialogs/ui/frame_dialogs.h"
#include "widgets/access/ui/accessible_role.h"
#include "widgets/access/ui/text_heights.h"
#include "widgets/ui/field_label.h"

CShortcutsDlg::CShortcutsDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, lng::Text("Keyboard shortcuts"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      m_search(new wxTextCtrl(this, wxID_ANY)),
      m_nothing(new wxStaticText(this, wxID_ANY, lng::Text("Nothing found"))),
      m_list(new CShortcutList(this)) {
    auto* label = new wxStaticText(this, wxID_ANY, lng::Text("Search for a key or a command"));
    SetLabelFor(*label, *m_search);
    m_nothing->Hide();
    SetAccessibleRole(*this, EAccessibleRole::Dialog);  // as modal ones get theirs when they open
    FitTextHeights(*this);
    const int margin = FromDIP(10);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(label, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP, margin));
    column->Add(m_search, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
    column->Add(m_nothing, wxSizerFlags().Center().Border(wxALL, margin));
    column->Add(m_list, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, margin));
    column->Add(MakeDialogButtons(*this, {wxID_CLOSE}), wxSizerFlags().Expand().Border(wxALL, margin));
    SetSizer(column);
    const wxSize room = wxDisplay(parent).GetClientArea().GetSize();
    const wxSize wanted = m_list->FullSize() + wxSize(2 * margin, FromDIP(160));
    SetClientSize(std::min(wanted.x, room.x * 9 / 10), std::min(wanted.y, room.y * 7 / 10));
    SetMinSize(wxSize(std::min(wanted.x / 2, room.x / 2), FromDIP(200)));
    SetEscapeId(wxID_CLOSE);
    CentreOnParent();
    BindKeys();
    m_search->SetFocus();
}

void CShortcutsDlg::BindKeys() {
    m_search->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { Search(); });
    Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Close(); });
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Destroy(); });
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (event.HasAnyModifiers() || !Scroll(event.GetKeyCode())) event.Skip();
    });
}

void CShortcutsDlg::Search() {
    const bool found = m_list->Filter(m_search->GetValue().ToStdWstring());
    m_nothing->Show(!found);
    Layout();
}

/** The keys that the search field has no use for scroll the list, wherever the focus is. */
bool CShortcutsDlg::Scroll(int keyCode) {
    switch (keyCode) {
        case WXK_UP:
            return m_list->ScrollLines(-1);
        case WXK_DOWN:
            return m_list->ScrollLines(1);
        case WXK_PAGEUP:
            return m_list->ScrollPages(-1);
        case WXK_PAGEDOWN:
            return m_list->ScrollPages(1);
        default:
            return false;
    }
}

void ShowShortcuts(wxFrame& frame) {
    static wxWeakRef<CShortcutsDlg> shown;
    if (!shown) shown = new CShortcutsDlg(&frame);
    shown->Show();
    shown->Raise();
}
