// SPDX-License-Identifier: MIT
#pragma once

#include "session/CShowState.h"

struct CCommand;

/** The state that menus and the toolbar depend on. */
struct CFrameState {
    CShowState shown;           ///< how the view shows models; the settings may differ
    bool hasModel = false;      ///< a model is open
    bool hasFile = false;       ///< the document is a file, open or failed to open
    bool canStep = false;       ///< its folder holds another model, or its script another scene
    bool canStartShow = false;  ///< there are models for a slideshow
    bool isShowRunning = false;
    bool hasNotes = false;
    bool canUndo = false;
    bool canRedo = false;
    bool hasUnsavedEdits = false;
    bool isAnimated = false;
    bool isPlaying = false;
    bool isFullScreen = false;
    bool isToolBarShown = false;
    bool isMaterialBarShown = false;
    int activeTool = 0;  ///< the command of the material tool that is in use; 0: none
    bool isModelListShown = false;
    bool isBrowserShown = false;
    int runningCommand = 0;  ///< its tool is shown pressed while it runs; 0: none
};

/** How menus and the toolbar show a command. */
struct CCommandState {
    bool enabled = true;
    bool checked = false;
    friend bool operator==(const CCommandState&, const CCommandState&) = default;
};

/** Whether a command is enabled and checked in this state. */
[[nodiscard]] CCommandState StateOf(const CCommand& command, const CFrameState& frame);
