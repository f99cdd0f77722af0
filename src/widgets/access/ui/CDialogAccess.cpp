// SPDX-License-Identifier: MIT
#include "widgets/access/ui/CDialogAccess.h"

#include <wx/dialog.h>

#include "widgets/access/ui/accessible_role.h"
#include "widgets/access/ui/text_heights.h"

int CDialogAccess::Enter(wxDialog* dialog) {
    if (dialog->GetHandle() && dialog->GetSizer()) {  // none of the desktop's own dialogs
        SetAccessibleRole(*dialog, EAccessibleRole::Dialog);
        FitTextHeights(*dialog);
    }
    return wxID_NONE;  // it opens as usual
}
