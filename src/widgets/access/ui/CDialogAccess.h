// SPDX-License-Identifier: MIT
#pragma once

#include <wx/modalhook.h>

/** Makes modal dialogs fit for everybody as they open, starting with Register(): screen readers know them as dialogs, and
 * fields for a line of text are as high as the text. */
class CDialogAccess final : public wxModalDialogHook {
  protected:
    int Enter(wxDialog* dialog) override;
};
