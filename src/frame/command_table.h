// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "frame/command_ids.h"

enum class EMenu { File, View, Export, Tools, Help };

/** What a command needs in order to be enabled. */
enum class ENeeds {
    Nothing,
    Model,      ///< a model is open
    File,       ///< the document is a file, open or failed to open
    Neighbour,  ///< the folder contains another model, or the script another scene
    Models,     ///< a slideshow has somewhere to go
    NoShow,     ///< the same, and none is running
    Show,       ///< a slideshow is running
    Animation,  ///< the scene is animated
    Notes,      ///< opening the model gave notes
    Undo,       ///< an edit can be taken back
    Redo,       ///< an undone edit can be applied again
    Edits,      ///< the scene has unsaved edits
    Feature,    ///< a feature that this version does not have; always disabled
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
    bool marksRun = false;   ///< its menu item is ticked while it runs; a tool is pressed in any case
};

/** All commands, in menu order. The recent files follow "Delete file", see kCmdFirstRecentFile. */
[[nodiscard]] std::span<const CCommand> Commands();
/** Null for a number that is no command's. */
[[nodiscard]] const CCommand* FindCommand(int id);
/** True for the commands of the six preset cameras, of which one is kept as CSettings::lastCamera. */
[[nodiscard]] bool IsPresetCamera(int id);
/** The tools in their order; 0 is a separator. */
[[nodiscard]] std::span<const int> ToolBarOrder();
/** The commands with buttons on the material toolbar. */
[[nodiscard]] std::span<const int> MaterialBarTools();
/** The commands of the view's context menu in their order; 0 is a separator. */
[[nodiscard]] std::span<const int> ContextMenuOrder();
/** "&File" and so on. */
[[nodiscard]] const char* MenuTitle(EMenu menu);
