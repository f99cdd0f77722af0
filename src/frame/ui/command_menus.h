// SPDX-License-Identifier: MIT
#pragma once

#include <wx/menu.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "frame/command_states.h"
#include "frame/command_table.h"

/** Tells how a command is to be shown now. */
using CStateOfCommand = std::function<CCommandState(const CCommand&)>;

/** The cameras of a scene (UTF-8), and the one that is looked through; empty, or that of a preset, for none
 * of them. */
struct CSceneCameras {
    std::vector<std::string> names;
    std::string current;
};

/** The menu bar with all commands of the table, in the language in force; the View menu holds an empty
 * sub-menu for the scene's cameras behind the presets. The caller owns it until a frame takes it. */
[[nodiscard]] std::unique_ptr<wxMenuBar> MakeMenuBar();
/** The view's context menu, with the scene's cameras. */
[[nodiscard]] std::unique_ptr<wxMenu> MakeContextMenu(const CSceneCameras& sceneCameras,
                                                      const CStateOfCommand& stateOf);
/** Puts a scene's cameras into the sub-menu of the View menu. */
void ShowSceneCameras(wxMenuBar& bar, const CSceneCameras& cameras);
/** Ticks the one in use there. */
void TickSceneCamera(wxMenuBar& bar, const CSceneCameras& cameras);
/** Moves the last menu (Help) to the right end of a bar that a frame shows, where the toolkit can do that. */
void AlignHelpRight(wxMenuBar& bar);
/** Enables and checks all items. */
void ShowStates(wxMenuBar& bar, const CStateOfCommand& stateOf);
/** The keys of all commands, for when the menu bar is hidden and does not hear them. */
[[nodiscard]] wxAcceleratorTable MakeAcceleratorTable();
