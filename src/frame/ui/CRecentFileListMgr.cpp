// SPDX-License-Identifier: MIT
#include "frame/ui/CRecentFileListMgr.h"

#include <wx/menu.h>

#include "base/text/lng.h"
#include "frame/command_table.h"

void CRecentFileListMgr::UpdateMenu(wxMenu& menu) const {
    std::size_t position = 0;
    if (!menu.FindChildItem(WidgetIdOf(kCmdFirstRecentFile), &position)) return;
    for (std::size_t i = 0; i < kMaxFiles; ++i) {
        wxMenuItem* item = menu.FindItem(WidgetIdOf(kCmdFirstRecentFile) + static_cast<int>(i));
        if (item) menu.Destroy(item);
    }
    for (std::size_t i = 0; i < Files().size(); ++i)
        menu.Insert(position + i, WidgetIdOf(kCmdFirstRecentFile) + static_cast<int>(i), MenuText(i),
                    GetNameByIndex(i));
    if (Files().empty())
        menu.Insert(position, WidgetIdOf(kCmdFirstRecentFile),
                    lng::Text(FindCommand(kCmdFirstRecentFile)->text))
            ->Enable(false);
}
