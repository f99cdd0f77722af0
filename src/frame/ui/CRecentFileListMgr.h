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
    /** The index of the entry for a command; nothing if there is no such entry. */
    [[nodiscard]] std::optional<std::size_t> GetIndexByResource(int commandId) const {
        const auto index = static_cast<std::size_t>(commandId - kCmdFirstRecentFile);
        return IsRecentFileResource(commandId) && index < Files().size() ? std::optional(index)
                                                                         : std::nullopt;
    }
    /** Replaces the placeholder (kCmdFirstRecentFile, disabled) in the menu by the entries; an empty list
     * brings the placeholder back. */
    void UpdateMenu(wxMenu& menu) const;
};
