// SPDX-License-Identifier: MIT
#include "frame/command_states.h"

#include "frame/command_table.h"

namespace {

bool IsEnabled(ENeeds needs, const CFrameState& frame) {
    switch (needs) {
        case ENeeds::Nothing:
            return true;
        case ENeeds::Model:
            return frame.hasModel;
        case ENeeds::File:
            return frame.hasFile;
        case ENeeds::Neighbour:
            return frame.canStep;
        case ENeeds::Models:
            return frame.canStartShow;
        case ENeeds::NoShow:
            return frame.canStartShow && !frame.isShowRunning;
        case ENeeds::Show:
            return frame.isShowRunning;
        case ENeeds::Animation:
            return frame.isAnimated;
        case ENeeds::Notes:
            return frame.hasNotes;
        case ENeeds::Undo:
            return frame.canUndo;
        case ENeeds::Redo:
            return frame.canRedo;
        case ENeeds::Edits:
            return frame.hasUnsavedEdits;
        case ENeeds::Feature:
            break;
    }
    return false;
}

bool IsChecked(int id, const CFrameState& frame) {
    switch (id) {
        case kCmdShowBounds:
            return frame.shown.bounds;
        case kCmdShowCameras:
            return frame.shown.cameras;
        case kCmdShowLights:
            return frame.shown.lights;
        case kCmdRenderMode:
            return frame.shown.wire;
        case kCmdShowAxis:
            return frame.shown.axes;
        case kCmdRotate:
            return frame.shown.rotate;
        case kCmdShowToolBar:
            return frame.isToolBarShown;
        case kCmdShowMaterialBar:
            return frame.isMaterialBarShown;
        case kCmdShowModelList:
            return frame.isModelListShown;
        case kCmdDownload:
            return frame.isBrowserShown;
        case kCmdFullScreen:
            return frame.isFullScreen;
        case kCmdPlayAnimation:
            return frame.isPlaying;
        default:
            return id == frame.runningCommand || id == frame.activeTool;
    }
}

}  // namespace

CCommandState StateOf(const CCommand& command, const CFrameState& frame) {
    return {IsEnabled(command.needs, frame), IsChecked(command.id, frame)};
}
