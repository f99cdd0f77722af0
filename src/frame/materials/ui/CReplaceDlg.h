// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

#include <optional>
#include <string>

#include "frame/materials/tool_values.h"

class CNodeList;
class CSceneView;
struct CPreparedScene;

/** Asks which node of a file is to take the place of others. */
class CReplaceDlg final : public wxDialog {
  public:
    /** scene must outlive it. proposed: the node that is selected at first, see ChoiceFor. */
    CReplaceDlg(wxWindow* parent, const std::wstring& fileName, const CPreparedScene& scene,
                const std::string& proposed);

    /** The chosen node. */
    [[nodiscard]] std::string Node() const;

  private:
    void UpdateButton();

    CNodeList* m_list;
};

/** Asks for a file and then for one of its nodes. Nothing when the user cancels, or when the file has none, which a
 * message box tells. The file dialog begins in the folder of the last choice, at first in startFolder. */
[[nodiscard]] std::optional<CReplacement> AskForReplacement(wxWindow& parent, CSceneView& view,
                                                            const std::wstring& startFolder,
                                                            const std::string& proposed);
