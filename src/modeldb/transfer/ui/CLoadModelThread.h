// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "modeldb/client/CBlobProgress.h"
#include "widgets/threads/ui/wxGUIThreadEx.h"

/** Downloads a model and posts it as kModel; one without bytes when that failed. */
class CLoadModelThread final : public wxGUIThreadEx, private CBlobProgress {
  public:
    CLoadModelThread(wxEvtHandler* target, std::uint32_t id, wxEventType type)
        : wxGUIThreadEx(target, type), m_id(id) {}

  private:
    void Entry() override;
    void OnProgressStart(std::int64_t total) override;
    void OnProgressStep() override;
    bool DoContinue() override { return wxGUIThread::DoContinue(); }

    std::uint32_t m_id;
};
