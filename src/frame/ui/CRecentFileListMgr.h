// SPDX-License-Identifier: MIT
#pragma once

#include "frame/CRecentFileList.h"

class wxMenu;

/** The list of recent files with its entries in the File menu. */
class CRecentFileListMgr : public CRecentFileList {
  public:
    /** Shows the entries where placeholder (kCmdFirstRecentFile, disabled) stands, which comes back for an
     * empty list. */
    void UpdateMenu(wxMenu& menu) const;
};
