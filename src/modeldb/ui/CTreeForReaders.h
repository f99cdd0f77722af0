// SPDX-License-Identifier: MIT
#pragma once

#include <wx/treectrl.h>

#include <functional>
#include <vector>

#include "widgets/access/ui/CAccessibleItems.h"

/** Tells screen readers of the items of a tree, which the toolkit draws itself. */
class CTreeForReaders final : private CDrawnItems {
  public:
    /** activate: does what Enter does at an item. Both must outlive it. */
    CTreeForReaders(wxTreeCtrl& tree, std::function<void(const wxTreeItemId&)> activate);
    CTreeForReaders(const CTreeForReaders&) = delete;
    CTreeForReaders& operator=(const CTreeForReaders&) = delete;
    ~CTreeForReaders();

  private:
    [[nodiscard]] std::size_t CountOf(CKey parent) const override;
    [[nodiscard]] CKey ItemOf(CKey parent, std::size_t index) const override;
    [[nodiscard]] bool HasItem(CKey) const override { return true; }
    [[nodiscard]] CDrawnItem Describe(CKey item) const override;
    [[nodiscard]] CKey ParentOf(CKey item) const override;
    [[nodiscard]] std::size_t IndexOf(CKey item) const override;
    [[nodiscard]] CKey Current() const override;
    [[nodiscard]] bool CanPress(CKey) const override { return true; }
    void Press(CKey item) override;
    [[nodiscard]] const std::vector<CKey>& ChildrenOf(CKey parent) const;
    void OnChange(wxTreeEvent& event);
    void OnDelete(wxTreeEvent& event);

    wxTreeCtrl& m_tree;
    std::function<void(const wxTreeItemId&)> m_activate;
    mutable CKey m_parent = kNone;  ///< whose children were asked for last
    mutable std::vector<CKey> m_children;
    CAccessibleItems m_access;
};
