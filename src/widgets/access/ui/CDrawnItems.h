// SPDX-License-Identifier: MIT
#pragma once

#include <wx/gdicmn.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "widgets/access/ui/accessible_role.h"

/** What screen readers are told of an item. */
struct CDrawnItem {
    EAccessibleRole role = EAccessibleRole::Label;
    std::wstring name{}, description{};
    wxRect place{};  ///< in the window's client area; empty for one that is not seen
    bool isEnabled = true, isSelected = false;
    bool isChecked = false;                      ///< of a toggle button
    bool canExpand = false, isExpanded = false;  ///< of a tree's item
};

/** The items that a window draws itself, as it tells screen readers of them. Items are known by numbers, which an item keeps
 * as long as it is there. */
class CDrawnItems {
  public:
    using CKey = std::uintptr_t;
    static constexpr CKey kNone = 0;  ///< no item; as a parent the window itself

    [[nodiscard]] virtual std::size_t CountOf(CKey parent) const = 0;
    /** index: below CountOf(parent). */
    [[nodiscard]] virtual CKey ItemOf(CKey parent, std::size_t index) const = 0;
    [[nodiscard]] virtual bool HasItem(CKey item) const = 0;
    [[nodiscard]] virtual CDrawnItem Describe(CKey item) const = 0;
    [[nodiscard]] virtual CKey ParentOf(CKey) const { return kNone; }
    [[nodiscard]] virtual std::size_t IndexOf(CKey item) const = 0;
    /** The item that the keys act on while the window has the focus. */
    [[nodiscard]] virtual CKey Current() const { return kNone; }
    [[nodiscard]] virtual bool CanPress(CKey) const { return false; }
    /** Does what a click does, or opens or closes an item that can be expanded. Called by the event loop. */
    virtual void Press(CKey) {}

  protected:
    ~CDrawnItems() = default;
};
