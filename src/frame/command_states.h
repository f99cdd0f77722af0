// SPDX-License-Identifier: MIT
#pragma once

#include "session/CShowState.h"

struct CCommand;

/** What menus and toolbar depend on. */
struct CFrameState {
    CShowState shown;           ///< what the view shows, which need not be what the settings say
    bool hasModel = false;      ///< a model is open
    bool hasFile = false;       ///< opening was asked for a file, be it open or not
    unsigned folderModels = 0;  ///< models in its folder, itself among them
    bool hasNotes = false;
    bool canUndo = false;
    bool canRedo = false;
    bool isAnimated = false;
    bool isPlaying = false;
    bool isFullScreen = false;
    bool isToolBarShown = false;
    int runningCommand = 0;  ///< shown pressed while it runs; 0: none
};

struct CCommandState {
    bool enabled = true;
    bool checked = false;
    friend bool operator==(const CCommandState&, const CCommandState&) = default;
};

/** How a command is to be shown now. */
[[nodiscard]] CCommandState StateOf(const CCommand& command, const CFrameState& frame);
