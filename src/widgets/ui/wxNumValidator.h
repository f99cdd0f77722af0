// SPDX-License-Identifier: MIT
#pragma once

#include <wx/validate.h>

#include <string>

#include "base/text/CNumberFormat.h"

/** Lets only a number of a format into a text control: keys that no number has are refused while typing, and
 * what is typed is checked by Validate, which tells the user what is wanted and leads back to the field. The
 * control's name (SetName) begins that message. Moves no values itself. */
class wxNumValidator final : public wxValidator {
  public:
    explicit wxNumValidator(CNumberFormat format);
    wxNumValidator(const wxNumValidator& other);
    wxNumValidator& operator=(const wxNumValidator&) = delete;

    [[nodiscard]] wxObject* Clone() const override { return new wxNumValidator(*this); }
    [[nodiscard]] bool Validate(wxWindow* parent) override;
    bool TransferToWindow() override { return true; }
    bool TransferFromWindow() override { return true; }

  private:
    void OnChar(wxKeyEvent& event);

    CNumberFormat m_format;
};
