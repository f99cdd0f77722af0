// SPDX-License-Identifier: MIT
#pragma once

#include <wx/treebase.h>

#include <string>

#include "modeldb/client/CBlobProgress.h"
#include "widgets/threads/ui/wxGUIThreadEx.h"

/** Gets the models of a group and posts them as kModels. */
class CLoadModelsThread final : public wxGUIThreadEx, private CBlobProgress {
  public:
    /** group: UTF-8. item: the group's, which is posted with the models and not used here. */
    CLoadModelsThread(wxEvtHandler* target, std::string group, wxEventType type, const wxTreeItemId& item);

  private:
    void Entry() override;
    void OnProgressStart(std::int64_t total) override;
    void OnProgressStep() override;
    bool DoContinue() override { return wxGUIThread::DoContinue(); }

    std::string m_group;
    wxTreeItemId m_item;
};
