// SPDX-License-Identifier: MIT
#pragma once

#include <atk/atk.h>

#include "widgets/access/ui/CDrawnItems.h"

struct CToldItems;

/** The object by which screen readers know an item that a window draws. owner must outlive it, or CutItemObject be called. */
[[nodiscard]] AtkObject* MakeItemObject(CToldItems& owner, CDrawnItems::CKey key);
/** The item is gone; whoever still knows the object is told nothing more of it. */
void CutItemObject(AtkObject& object);
/** The states of an item as ATK has them. */
[[nodiscard]] AtkStateSet* StatesOf(const CDrawnItem& item, bool isFocused, bool isShown);
