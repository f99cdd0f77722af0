// SPDX-License-Identifier: MIT
#pragma once

#include "modeldb/client/CBlobProgress.h"
#include "widgets/threads/ui/wxGUIThreadEx.h"

/** Gets the groups of the library and how many models each has, and posts them as kGroups. */
class CLoadGroupsThread final : public wxGUIThreadEx, private CBlobProgress {
  public:
    CLoadGroupsThread(wxEvtHandler* target, wxEventType type) : wxGUIThreadEx(target, type) {}

  private:
    void Entry() override;
    void OnProgressStart(std::int64_t total) override;
    void OnProgressStep() override;
    bool DoContinue() override { return wxGUIThread::DoContinue(); }
};
