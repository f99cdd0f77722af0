// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "frame/command_ids.h"
#include "session/CRecentFileList.h"

class wxMenu;

/** The list of recent files with its entries in the File menu. */
class CRecentFileListMgr : public CRecentFileList {
  public:
    /** Commands kCmdFirstRecentFile and following are the entries. */
    [[nodiscard]] static bool IsRecentFileResource(int commandId) {
        return commandId >= kCmdFirstRecentFile &&
               commandId < kCmdFirstRecentFile + static_cast<int>(kMaxFiles);
    }
    /** Nothing for a command that no entry has now. */
    [[nodiscard]] std::optional<std::size_t> GetIndexByResource(int commandId) const {
        const auto index = static_cast<std::size_t>(commandId - kCmdFirstRecentFile);
        return IsRecentFileResource(commandId) && index < Files().size() ? std::optional(index)
                                                                         : std::nullopt;
    }
    /** Shows the entries where placeholder (kCmdFirstRecentFile, disabled) stands, which comes back
     * for an empty list. */
    void UpdateMenu(wxMenu& menu) const;
};
