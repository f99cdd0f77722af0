// SPDX-License-Identifier: MIT
#pragma once

#include <wx/aui/auibar.h>

#include "frame/command_ids.h"
#include "frame/materials/CToolButtons.h"

/** The buttons of a toolbar, which must outlive it. */
class CAuiToolButtons final : public CToolButtons {
  public:
    explicit CAuiToolButtons(wxAuiToolBar& bar) : m_bar(bar) {}
    [[nodiscard]] bool HasTool(int identifier) const override {
        return m_bar.FindTool(WidgetIdOf(identifier)) != nullptr;
    }
    void ToggleTool(int identifier, bool on) override { m_bar.ToggleTool(WidgetIdOf(identifier), on); }
    void Refresh() override { m_bar.Refresh(false); }

  private:
    wxAuiToolBar& m_bar;
};
