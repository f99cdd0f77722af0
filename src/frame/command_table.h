// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "frame/command_ids.h"

enum class EMenu { File, View, Export, Tools, Help };

/** What must be there before a command can be chosen. */
enum class ENeeds {
    Nothing,
    Model,      ///< a model is open
    File,       ///< opening was asked for a file, be it open or not
    Neighbour,  ///< the model's folder holds another one
    Animation,  ///< the model moves
    Notes,      ///< something was noticed about the model
    Undo,       ///< an edit can be taken back
    Redo,       ///< an edit that was taken back can be done again
    Feature,    ///< something that this version does not have yet
};

/** One command. Texts are English literals for lng::Text. */
struct CCommand {
    int id = 0;
    EMenu menu = EMenu::File;
    const char* text = nullptr;     ///< of the menu item, with its key after a tab
    const char* toolTip = nullptr;  ///< of the toolbar's tool; null: it has none
    const char* icon = nullptr;     ///< file in the images folder; null: none
    ENeeds needs = ENeeds::Nothing;
    bool isToggle = false;
    bool endsGroup = false;  ///< a separator follows in the menu
};

/** All commands, in menu order. The recent files stand behind "Delete file", see kCmdFirstRecentFile. */
[[nodiscard]] std::span<const CCommand> Commands();
/** Null for a number that is no command's. */
[[nodiscard]] const CCommand* FindCommand(int id);
/** True for the commands of the six preset cameras, of which one is kept as CSettings::lastCamera. */
[[nodiscard]] bool IsPresetCamera(int id);
/** The tools in their order; 0 is a separator. */
[[nodiscard]] std::span<const int> ToolBarOrder();
/** The commands of the view's context menu in their order; 0 is a separator. */
[[nodiscard]] std::span<const int> ContextMenuOrder();
/** "&File" and so on. */
[[nodiscard]] const char* MenuTitle(EMenu menu);
