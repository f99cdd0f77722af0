// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "widgets/access/ui/CAccessibleItems.h"

/** Tells screen readers of a simple list: items known by their places, from 0 on. */
class CAccessibleRows final : private CDrawnItems {
  public:
    struct CSource {
        std::function<std::size_t()> count;
        std::function<CDrawnItem(std::size_t)> describe;
        std::function<std::optional<std::size_t>()> current;  ///< the keys act on it; null: never on one
        std::function<void(std::size_t)> press;               ///< null: nothing happens by a click
    };
    /** As of CAccessibleItems; what source refers to must outlive it, too. */
    CAccessibleRows(wxWindow& window, EAccessibleRole role, CSource source);

    /** Something of the items is different now. */
    void Changed() { m_access.Changed(); }

  private:
    [[nodiscard]] std::size_t CountOf(CKey parent) const override {
        return parent == kNone ? m_source.count() : 0;
    }
    [[nodiscard]] CKey ItemOf(CKey, std::size_t index) const override { return index + 1; }
    [[nodiscard]] bool HasItem(CKey item) const override { return item <= m_source.count(); }
    [[nodiscard]] CDrawnItem Describe(CKey item) const override { return m_source.describe(item - 1); }
    [[nodiscard]] std::size_t IndexOf(CKey item) const override { return item - 1; }
    [[nodiscard]] CKey Current() const override;
    [[nodiscard]] bool CanPress(CKey) const override { return m_source.press != nullptr; }
    void Press(CKey item) override { m_source.press(item - 1); }

    CSource m_source;
    CAccessibleItems m_access;
};
