// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

#include <unordered_map>

#include "widgets/access/ui/CDrawnItems.h"

class wxWindow;

/** What was told of a window's items: the objects by which screen readers know them. */
struct CToldItems {
    using CKey = CDrawnItems::CKey;
    struct CTold {
        AtkObject* object = nullptr;  ///< a reference of ours
        CDrawnItem item;              ///< as it was told last
    };

    /** The object of an item, made when it is asked for first. Its owner is this. */
    [[nodiscard]] AtkObject* ObjectOf(CKey item);
    /** The window's own; null when that is gone. */
    [[nodiscard]] AtkObject* Container() const;
    /** The window has the keyboard's focus. */
    [[nodiscard]] bool HasFocus() const;
    /** The item has it. */
    [[nodiscard]] bool IsFocused(CKey item) const;

    wxWindow* window = nullptr;  ///< null from its end on, as items
    CDrawnItems* items = nullptr;
    GtkWidget* widget = nullptr;  ///< in which they are drawn; becomes null with it
    bool isMany = false;          ///< their number may change at any time
    CKey focused = CDrawnItems::kNone;
    std::size_t count = 0;  ///< without a parent
    std::unordered_map<CKey, CTold> told;
};
