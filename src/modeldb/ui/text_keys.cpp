// SPDX-License-Identifier: MIT
#include "modeldb/ui/text_keys.h"

#include <wx/accel.h>
#include <wx/textctrl.h>

#include <array>

void GiveTextKeys(wxTextCtrl& field) {
    const std::array keys{
        wxAcceleratorEntry(wxACCEL_CTRL, 'X', wxID_CUT),
        wxAcceleratorEntry(wxACCEL_CTRL, 'C', wxID_COPY),
        wxAcceleratorEntry(wxACCEL_CTRL, 'V', wxID_PASTE),
        wxAcceleratorEntry(wxACCEL_CTRL, 'Z', wxID_UNDO),
        wxAcceleratorEntry(wxACCEL_CTRL | wxACCEL_SHIFT, 'Z', wxID_REDO),
        wxAcceleratorEntry(wxACCEL_NORMAL, WXK_HOME, wxID_TOP),
    };
    field.SetAcceleratorTable({static_cast<int>(keys.size()), keys.data()});
    field.Bind(
        wxEVT_MENU, [&field](wxCommandEvent&) { field.SetInsertionPoint(0); }, wxID_TOP);
}
