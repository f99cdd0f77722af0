// SPDX-License-Identifier: MIT
#include "frame/command_table.h"

#include <algorithm>
#include <array>

#include "base/text/lng.h"

using lng::Mark;

namespace {

constexpr bool kToggle = true, kEndsGroup = true, kMarksRun = true;

// clang-format off
constexpr CCommand kCommands[] = {
    {kCmdOpen, EMenu::File, Mark("&Open\tCtrl+O"), Mark("Open 3ds file"), "open_file.ico"},
    {kCmdReload, EMenu::File, Mark("&Reload\tF5"), nullptr, nullptr, ENeeds::File},
    {kCmdSaveAs, EMenu::File, Mark("&Save As\tCtrl+S"), Mark("Save 3ds file"), "save.ico", ENeeds::Model},
    {kCmdCompressToZip, EMenu::File, Mark("Compress to zip"), Mark("Compress to zip"), "zip.ico", ENeeds::Model},
    {kCmdSaveEdits, EMenu::File, Mark("Save &edits to script\tCtrl+E"), Mark("Save edits to the scene's script"),
     "save_edits.ico", ENeeds::Edits},
    {kCmdDeleteFile, EMenu::File, Mark("&Delete file"), Mark("Delete current file"), "delete_file.ico", ENeeds::Model,
     !kToggle, kEndsGroup},
    {kCmdFirstRecentFile, EMenu::File, Mark("Recent File"), nullptr, nullptr, ENeeds::Feature, !kToggle, kEndsGroup},
    {kCmdExit, EMenu::File, Mark("E&xit\tCtrl+X"), Mark("Exit"), "exit.ico"},

    {kCmdTopCamera, EMenu::View, Mark("Top Camera"), Mark("Top Camera"), "top_camera.ico"},
    {kCmdLeftCamera, EMenu::View, Mark("Left Camera"), Mark("Left Camera"), "x_camera.ico"},
    {kCmdRightCamera, EMenu::View, Mark("Right Camera"), Mark("Right Camera"), "right_camera.ico"},
    {kCmdFrontCamera, EMenu::View, Mark("Front Camera"), Mark("Front Camera"), "y_camera.ico"},
    {kCmdBackCamera, EMenu::View, Mark("Back Camera"), Mark("Back Camera"), "back_camera.ico"},
    {kCmdIsoCamera, EMenu::View, Mark("ISO Camera"), Mark("ISO Camera"), "iso_camera.ico", ENeeds::Nothing, !kToggle,
     kEndsGroup},
    {kCmdShowBounds, EMenu::View, Mark("Show Bounding Box"), Mark("Show Bounding Box"), "bound.ico", ENeeds::Nothing,
     kToggle},
    {kCmdShowCameras, EMenu::View, Mark("Show Cameras"), Mark("Show Cameras"), "show_cam.ico", ENeeds::Nothing, kToggle},
    {kCmdShowLights, EMenu::View, Mark("Show Lights"), Mark("Show Lights"), "show_light.ico", ENeeds::Nothing, kToggle},
    {kCmdRenderMode, EMenu::View, Mark("Render mode"), Mark("Render Mode"), "render_mode.ico", ENeeds::Nothing, kToggle},
    {kCmdShowAxis, EMenu::View, Mark("Show Axis"), Mark("Show Axis"), "show_axis.ico", ENeeds::Nothing, kToggle,
     kEndsGroup},
    {kCmdRotate, EMenu::View, Mark("Rotate"), Mark("Rotate"), "rotate.ico", ENeeds::Nothing, kToggle, kEndsGroup},
    {kCmdPreviousFile, EMenu::View, Mark("Previous file in directory"),
     Mark("Previous file in directory (back space button)"), "prev.ico", ENeeds::Neighbour,
     !kToggle, !kEndsGroup, kMarksRun},
    {kCmdNextFile, EMenu::View, Mark("Next file in directory"), Mark("Next file in directory (space button)"),
     "next.ico", ENeeds::Neighbour, !kToggle, kEndsGroup, kMarksRun},
    {kCmdFullScreen, EMenu::View, Mark("Fullscreen view\tF11"), Mark("Fullscreen view"), "full_screen.ico",
     ENeeds::Nothing, kToggle, kEndsGroup},
    {kCmdShowToolBar, EMenu::View, Mark("Show toolbar"), nullptr, nullptr, ENeeds::Nothing, kToggle},
    {kCmdShowMaterialBar, EMenu::View, Mark("Show material toolbar"), nullptr, nullptr, ENeeds::Nothing, kToggle},
    {kCmdShowModelList, EMenu::View, Mark("Show model list\tCtrl+L"), nullptr, nullptr, ENeeds::Nothing, kToggle,
     kEndsGroup},
    {kCmdStartSlideShow, EMenu::View, Mark("Start Slideshow"), nullptr, nullptr, ENeeds::NoShow},
    {kCmdStopSlideShow, EMenu::View, Mark("Stop Slideshow"), nullptr, nullptr, ENeeds::Show, !kToggle, kEndsGroup},
    {kCmdFullScreenSlideShow, EMenu::View, Mark("Full-screen slideshow\tShift+F11"), nullptr, nullptr,
     ENeeds::Models},
    {kCmdPlayAnimation, EMenu::View, Mark("Play animation\tCtrl+P"), nullptr, nullptr, ENeeds::Animation, kToggle},
    {kCmdResetView, EMenu::View, Mark("Reset view\tHome"), nullptr, nullptr, ENeeds::Model},
    {kCmdSceneNotes, EMenu::View, Mark("Notes about this model..."), nullptr, nullptr, ENeeds::Notes},

    {kCmdPovSettings, EMenu::Export, Mark("POV-Ray output settings"), nullptr, nullptr},
    {kCmdExportPov, EMenu::Export, Mark("Exort to POV-Ray format"), Mark("Export to POV-Ray format"), "pov_output.ico",
     ENeeds::Model, !kToggle, kEndsGroup},
    {kCmdHtmlSettings, EMenu::Export, Mark("HTML5 output settings"), nullptr, nullptr},
    {kCmdExportHtml, EMenu::Export, Mark("Export to HTML5"), Mark("Export to HTML5 format"), "html5.ico",
     ENeeds::Model, !kToggle, !kEndsGroup, kMarksRun},
    {kCmdExportGoogleDrive, EMenu::Export, Mark("Export to Google Drive"), Mark("Export to Google Drive"),
     "google_drive.ico", ENeeds::Model, !kToggle, !kEndsGroup, kMarksRun},
    {kCmdExportGltf, EMenu::Export, Mark("Export to glTF (.glb)"), nullptr, nullptr, ENeeds::Model},

    {kCmdUndo, EMenu::Tools, Mark("&Undo\tCtrl+Z"), nullptr, nullptr, ENeeds::Undo},
    {kCmdRedo, EMenu::Tools, Mark("&Redo\tCtrl+Shift+Z"), nullptr, nullptr, ENeeds::Redo, !kToggle, kEndsGroup},
    {kCmdToolColor, EMenu::Tools, Mark("Colour of a part"), Mark("Colour of a part"), "tool_color.ico", ENeeds::Model,
     kToggle},
    {kCmdToolShininess, EMenu::Tools, Mark("Shininess of a part"), Mark("Shininess of a part"), "tool_shininess.ico",
     ENeeds::Model, kToggle},
    {kCmdToolTransparency, EMenu::Tools, Mark("Transparency of a part"), Mark("Transparency of a part"),
     "tool_transparency.ico", ENeeds::Model, kToggle},
    {kCmdToolReplace, EMenu::Tools, Mark("Replace parts..."), Mark("Replace parts by one of another file"),
     "tool_replace.ico", ENeeds::Model, kToggle},
    {kCmdToolFilter, EMenu::Tools, Mark("Filter by material"), Mark("Show what has the same material"),
     "tool_filter.ico", ENeeds::Model, kToggle, kEndsGroup},
    {kCmdScreenShot, EMenu::Tools, Mark("ScreenShot\tCtrl+C"), Mark("ScreenShot (CTRL+C)"), "screenshot.ico",
     ENeeds::Model, !kToggle, kEndsGroup},
    {kCmdSelectLanguage, EMenu::Tools, Mark("Select Language"), nullptr, nullptr, ENeeds::Nothing, !kToggle, kEndsGroup},
    {kCmdSettings, EMenu::Tools, Mark("Settings"), nullptr, nullptr, ENeeds::Nothing, !kToggle, kEndsGroup},
    {kCmdDownload, EMenu::Tools, Mark("Download files"), Mark("Download 3ds files from server"), "download.ico",
     ENeeds::Nothing, kToggle},
    {kCmdUpload, EMenu::Tools, Mark("Upload file"), Mark("Upload file to server"), "upload.ico", ENeeds::Model,
     !kToggle, !kEndsGroup, kMarksRun},
    {kCmdClearCache, EMenu::Tools, Mark("Clear cache"), nullptr, nullptr},

    {kCmdManual, EMenu::Help, Mark("Manual\tF1"), nullptr, nullptr},
    {kCmdShortcuts, EMenu::Help, Mark("Keyboard shortcuts\tCtrl+?"), nullptr, nullptr, ENeeds::Nothing, !kToggle,
     kEndsGroup},
    {kCmdVisitWebsite, EMenu::Help, Mark("Visit Website"), nullptr, nullptr, ENeeds::Nothing, !kToggle, kEndsGroup},
    {kCmdCheckForUpdates, EMenu::Help, Mark("Check for updates..."), nullptr, nullptr, ENeeds::Nothing, !kToggle,
     kEndsGroup},
    {kCmdAbout, EMenu::Help, Mark("&About ..."), Mark("About Orbivue"), "about.ico", ENeeds::Nothing,
     !kToggle, !kEndsGroup, kMarksRun},
};
// clang-format on

constexpr int kSeparator = 0;
constexpr int kToolBar[] = {
    kCmdOpen,      kCmdSaveAs,     kCmdCompressToZip,     kCmdDeleteFile,  kCmdExit,       kSeparator,
    kCmdTopCamera, kCmdLeftCamera, kCmdRightCamera,       kCmdFrontCamera, kCmdBackCamera, kCmdIsoCamera,
    kSeparator,    kCmdShowBounds, kCmdShowCameras,       kCmdShowLights,  kCmdRenderMode, kCmdShowAxis,
    kCmdRotate,    kSeparator,     kCmdPreviousFile,      kCmdNextFile,    kSeparator,     kCmdDownload,
    kCmdUpload,    kSeparator,     kCmdFullScreen,        kSeparator,      kCmdScreenShot, kSeparator,
    kCmdExportPov, kCmdExportHtml, kCmdExportGoogleDrive, kSeparator,      kCmdAbout};
constexpr int kMaterialBar[] = {kCmdToolColor,   kCmdToolShininess, kCmdToolTransparency,
                                kCmdToolReplace, kCmdToolFilter,    kCmdSaveEdits};
constexpr int kContextMenu[] = {
    kCmdOpen,        kCmdReload,     kSeparator,    kCmdTopCamera,     kCmdLeftCamera, kCmdRightCamera,
    kCmdFrontCamera, kCmdBackCamera, kCmdIsoCamera, kCmdResetView,     kSeparator,     kCmdRenderMode,
    kCmdShowBounds,  kCmdShowAxis,   kCmdRotate,    kCmdPlayAnimation, kSeparator,     kCmdPreviousFile,
    kCmdNextFile,    kSeparator,     kCmdFullScreen};

}  // namespace

std::span<const CCommand> Commands() {
    return kCommands;
}

const CCommand* FindCommand(int id) {
    const auto* found = std::find_if(std::begin(kCommands), std::end(kCommands),
                                     [id](const CCommand& command) { return command.id == id; });
    return found == std::end(kCommands) ? nullptr : found;
}

bool IsPresetCamera(int id) {
    constexpr int kCameras[] = {kCmdTopCamera,   kCmdLeftCamera, kCmdRightCamera,
                                kCmdFrontCamera, kCmdBackCamera, kCmdIsoCamera};
    return std::find(std::begin(kCameras), std::end(kCameras), id) != std::end(kCameras);
}

std::span<const int> ToolBarOrder() {
    return kToolBar;
}

std::span<const int> MaterialBarTools() {
    return kMaterialBar;
}

std::span<const int> ContextMenuOrder() {
    return kContextMenu;
}

const char* MenuTitle(EMenu menu) {
    constexpr std::array kTitles{Mark("&File"), Mark("&View"), Mark("&Export"), Mark("&Tools"),
                                 Mark("&Help")};
    return kTitles[static_cast<std::size_t>(menu)];
}
