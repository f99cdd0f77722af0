// SPDX-License-Identifier: MIT
#pragma once

struct CCommand;
struct CSettings;

/** What menus and toolbar depend on, beside the settings. */
struct CFrameState {
    bool hasModel = false;      ///< a model is shown
    unsigned folderModels = 0;  ///< models in its folder, itself among them
    bool hasNotes = false;
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
[[nodiscard]] CCommandState StateOf(const CCommand& command, const CFrameState& frame,
                                    const CSettings& settings);
