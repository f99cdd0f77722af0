// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

#include <string>
#include <vector>

/** Shows the notes about a model as text that can be selected and copied. */
class CSceneNotesDlg final : public wxDialog {
  public:
    CSceneNotesDlg(wxWindow* parent, const std::vector<std::wstring>& lines);
};
