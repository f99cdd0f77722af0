// SPDX-License-Identifier: MIT
#include "frame/command_states.h"

#include "frame/command_table.h"
#include "settings/CSettings.h"

namespace {

bool IsEnabled(ENeeds needs, const CFrameState& frame) {
    switch (needs) {
        case ENeeds::Nothing:
            return true;
        case ENeeds::Model:
            return frame.hasModel;
        case ENeeds::Neighbour:
            return frame.folderModels >= 2;
        case ENeeds::Animation:
            return frame.isAnimated;
        case ENeeds::Notes:
            return frame.hasNotes;
        case ENeeds::Feature:
            break;
    }
    return false;
}

bool IsChecked(int id, const CFrameState& frame, const CSettings& settings) {
    switch (id) {
        case kCmdShowBounds:
            return settings.showBounds;
        case kCmdShowCameras:
            return settings.showCameras;
        case kCmdShowLights:
            return settings.showLights;
        case kCmdRenderMode:
            return settings.wireFrame;
        case kCmdShowAxis:
            return settings.showAxis;
        case kCmdRotate:
            return settings.rotate;
        case kCmdShowToolBar:
            return frame.isToolBarShown;
        case kCmdFullScreen:
            return frame.isFullScreen;
        case kCmdPlayAnimation:
            return frame.isPlaying;
        default:
            return id == frame.runningCommand;
    }
}

}  // namespace

CCommandState StateOf(const CCommand& command, const CFrameState& frame, const CSettings& settings) {
    return {IsEnabled(command.needs, frame), IsChecked(command.id, frame, settings)};
}
