// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "modeldb/client/CBlobProgress.h"
#include "widgets/threads/ui/wxGUIThreadEx.h"

/** Searches the whole library for models whose name holds a text, and posts them as kFound. It shows no progress, and may
 * run beside a transfer. */
class CSearchModelsThread final : public wxGUIThreadEx, private CBlobProgress {
  public:
    /** text: UTF-8. */
    CSearchModelsThread(wxEvtHandler* target, wxEventType type, std::string text);

  private:
    void Entry() override;
    void OnProgressStart(std::int64_t) override {}
    void OnProgressStep() override {}
    bool DoContinue() override { return wxGUIThread::DoContinue(); }

    std::string m_text;
};
