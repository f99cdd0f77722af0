// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "widgets/access/ui/CDrawnItems.h"

class wxWindow;
struct CToldItems;

/** Tells screen readers of the items that a window draws, as long as it lives. It is to be made before the window is named,
 * as only what is asked for its name later has children of its own. */
class CAccessibleItems {
  public:
    /** Both must outlive it. role: the window's own. */
    CAccessibleItems(wxWindow& window, EAccessibleRole role, CDrawnItems& items);
    CAccessibleItems(const CAccessibleItems&) = delete;
    CAccessibleItems& operator=(const CAccessibleItems&) = delete;
    ~CAccessibleItems();

    /** Tells what of the items has changed: their number, names, states, which is the current one. */
    void Changed();
    /** Items may stand for others now than before: all are told of as new ones. */
    void Forget();

  private:
    std::unique_ptr<CToldItems> m_told;
    unsigned long m_focusHandler = 0;
};
