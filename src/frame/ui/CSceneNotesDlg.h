// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

#include <string>
#include <vector>

/** Lists what was noticed about a model, to be read and copied. */
class CSceneNotesDlg final : public wxDialog {
  public:
    CSceneNotesDlg(wxWindow* parent, const std::vector<std::wstring>& lines);
};
