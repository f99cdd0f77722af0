// SPDX-License-Identifier: MIT
#pragma once

#include <wx/validate.h>

#include <string>

#include "base/text/CNumberFormat.h"

/** Restricts a text control to numbers of a format. It rejects keys that no number contains. Validate checks
 * the text; if it is wrong, Validate shows what is expected, in a message that begins with the control's name
 * (SetName), and puts the focus on the field. Transfers no values. */
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
