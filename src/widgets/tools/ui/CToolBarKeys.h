// SPDX-License-Identifier: MIT
#pragma once

#include <wx/aui/auibar.h>
#include <wx/clntdata.h>

#include <memory>

#include "widgets/access/ui/CAccessibleItems.h"

/** Lets a toolbar be used by keys and by screen readers. While the bar has the focus one of its tools, which is marked, is the
 * current one: the arrows, Home and End go to another, Space and Enter press it. Tab goes on to the
 * controls in the bar. Tools that do not fit are in a menu, to which the last tool leads. */
class CToolBarKeys final : public wxClientData, private CDrawnItems {
  public:
    /** The bar owns it. */
    static void Give(wxAuiToolBar& bar);
    /** The keys that a window was given; null for none. */
    [[nodiscard]] static CToolBarKeys* Of(const wxWindow& window);

    /** States or texts of tools have changed, or whether they fit. */
    void ToolsChanged();
    /** The keys act on this tool now. */
    [[nodiscard]] bool IsCurrent(int toolId) const;
    /** The keys act on the arrow to the tools that do not fit. */
    [[nodiscard]] bool IsArrowCurrent() const;

  private:
    explicit CToolBarKeys(wxAuiToolBar& bar);
    [[nodiscard]] bool OnKey(const wxKeyEvent& event);
    void Step(int by, CKey from);
    /** Goes from the tools to a control in the bar, from one to the next, and out of the bar, for which the toolkit has no way. */
    void StepControl(int by);
    void LeaveBar(bool forward);
    void GoTo(CKey item);
    [[nodiscard]] CKey Usable(std::size_t from, int by) const;
    [[nodiscard]] wxRect ArrowPlace() const;

    [[nodiscard]] std::size_t CountOf(CKey parent) const override;
    [[nodiscard]] CKey ItemOf(CKey parent, std::size_t index) const override;
    [[nodiscard]] bool HasItem(CKey item) const override;
    [[nodiscard]] CDrawnItem Describe(CKey item) const override;
    [[nodiscard]] std::size_t IndexOf(CKey item) const override;
    [[nodiscard]] CKey Current() const override;
    [[nodiscard]] bool CanPress(CKey) const override { return true; }
    void Press(CKey item) override;

    wxAuiToolBar& m_bar;
    CKey m_current = kNone;
    std::unique_ptr<CAccessibleItems> m_access;  ///< null while the bar is deleted
};
