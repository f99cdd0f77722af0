// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/** What a key or a movement of the mouse does. All texts are in the program's language. */
struct CShortcut {
    std::vector<std::string> keys;  ///< any of them: "Ctrl+O", "F5", or a key as GDK names it, "Page_Up"
    std::wstring gesture;           ///< of the mouse, where there are no keys
    std::wstring does;
};

/** Those that belong together. */
struct CShortcutGroup {
    std::wstring title;
    std::vector<CShortcut> shortcuts;
};

/** All keys of the program: those of the command table, by menu, and those of the parts of the window. */
[[nodiscard]] std::vector<CShortcutGroup> ShortcutGroups();
