// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

#include <string>
#include <vector>

/** Asks, before an upload, whether pictures from outside the model's own folder may go with it. Ends with wxID_OK or
 * wxID_CANCEL; Enter alone agrees to nothing. */
class COutsidePicturesDlg final : public wxDialog {
  public:
    /** paths: UTF-8. */
    COutsidePicturesDlg(wxWindow* parent, const std::vector<std::string>& paths);
};
