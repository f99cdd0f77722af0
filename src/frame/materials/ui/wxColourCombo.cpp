// SPDX-License-Identifier: MIT
#include "frame/materials/ui/wxColourCombo.h"

#include "frame/materials/ui/wxColourPopup.h"
#include "widgets/access/ui/focus.h"

wxColourCombo::wxColourCombo(wxWindow* parent, wxColorPopupListener* listener)
    : wxComboCtrl(parent, wxID_ANY, wxEmptyString, wxDefaultPosition, parent->FromDIP(wxSize(64, -1)),
                  wxCB_READONLY),
      m_popup(new wxColourPopup(listener)) {
    SetPopupControl(m_popup);
    m_popup->TellReaders();
    LetTakeFocus(*this);
}

void wxColourCombo::SetColour(const wxColour& color) {
    m_popup->SetColour(color);
}

const wxColour& wxColourCombo::GetColour() const {
    return m_popup->GetColour();
}
