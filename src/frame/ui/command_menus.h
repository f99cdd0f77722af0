// SPDX-License-Identifier: MIT
#pragma once

#include <wx/menu.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "frame/command_states.h"
#include "frame/command_table.h"

/** Returns whether a command is enabled and checked now. */
using CStateOfCommand = std::function<CCommandState(const CCommand&)>;

/** The names of a scene's cameras (UTF-8), and of the camera in use; current may be empty or a
 * preset's name. */
struct CSceneCameras {
    std::vector<std::string> names;
    std::string current;
};

/** The menu bar with all commands of the table, translated. After the presets the View menu has an empty
 * sub-menu for the scene's cameras. The caller owns the bar until SetMenuBar passes it to a window. */
[[nodiscard]] std::unique_ptr<wxMenuBar> MakeMenuBar();
/** The view's context menu, with the scene's cameras. */
[[nodiscard]] std::unique_ptr<wxMenu> MakeContextMenu(const CSceneCameras& sceneCameras,
                                                      const CStateOfCommand& stateOf);
/** Fills the View menu's sub-menu with a scene's cameras. */
void ShowSceneCameras(wxMenuBar& bar, const CSceneCameras& cameras);
/** Ticks the camera in use in that sub-menu. */
void TickSceneCamera(wxMenuBar& bar, const CSceneCameras& cameras);
/** Names what Undo and Redo do in their items: "Undo: colour of Box01". The names are translated; empty for nothing. */
void ShowStepNames(wxMenuBar& bar, const std::wstring& undo, const std::wstring& redo);
/** Moves the last menu (Help) to the right end of a bar that is on a window, where the toolkit
 * supports it. */
void AlignHelpRight(wxMenuBar& bar);
/** Enables and checks all items. */
void ShowStates(wxMenuBar& bar, const CStateOfCommand& stateOf);
/** The keys of all commands, because a hidden menu bar does not receive them. */
[[nodiscard]] wxAcceleratorTable MakeAcceleratorTable();
