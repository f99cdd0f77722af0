// SPDX-License-Identifier: MIT
#pragma once

#include <wx/combo.h>

class wxColorPopupListener;
class wxColourPopup;

/** A field that shows a colour and opens a wxColourPopup to choose another one. */
class wxColourCombo final : public wxComboCtrl {
  public:
    /** listener may be null and must outlive it. */
    wxColourCombo(wxWindow* parent, wxColorPopupListener* listener);

    /** Shows a colour; the listener is not told. */
    void SetColour(const wxColour& color);
    [[nodiscard]] const wxColour& GetColour() const;

  private:
    wxColourPopup* m_popup;  // the control owns it
};
