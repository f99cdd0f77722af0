// SPDX-License-Identifier: MIT
#pragma once

/** Numbers of the commands. Settings and scripts store those of the fixed table, so they never change. */
constexpr int kCmdOpen = 32807;
constexpr int kCmdSaveAs = 32812;
constexpr int kCmdCompressToZip = 32819;
constexpr int kCmdDeleteFile = 32793;
constexpr int kCmdFirstRecentFile = 57616;
constexpr int kCmdExit = 32105;
constexpr int kCmdTopCamera = 32810;
constexpr int kCmdLeftCamera = 32774;
constexpr int kCmdRightCamera = 32809;
constexpr int kCmdFrontCamera = 32775;
constexpr int kCmdBackCamera = 32808;
constexpr int kCmdIsoCamera = 32776;
constexpr int kCmdShowBounds = 32777;
constexpr int kCmdShowCameras = 32778;
constexpr int kCmdShowLights = 32779;
constexpr int kCmdRenderMode = 32803;
constexpr int kCmdShowAxis = 32780;
constexpr int kCmdRotate = 32781;
constexpr int kCmdPreviousFile = 32791;
constexpr int kCmdNextFile = 32792;
constexpr int kCmdFullScreen = 32821;
constexpr int kCmdShowToolBar = 32801;
constexpr int kCmdStartSlideShow = 32823;
constexpr int kCmdStopSlideShow = 32824;
constexpr int kCmdPovSettings = 32805;
constexpr int kCmdExportPov = 32804;
constexpr int kCmdHtmlSettings = 32842;
constexpr int kCmdExportHtml = 32840;
constexpr int kCmdExportGoogleDrive = 32850;
constexpr int kCmdScreenShot = 32822;
constexpr int kCmdSelectLanguage = 32818;
constexpr int kCmdSettings = 32847;
constexpr int kCmdDownload = 32811;
constexpr int kCmdUpload = 32813;
constexpr int kCmdClearCache = 32814;
constexpr int kCmdVisitWebsite = 32843;
constexpr int kCmdCheckForUpdates = 32845;
constexpr int kCmdAbout = 32104;

/** Commands that are not in the fixed table, in a range of their own. */
constexpr int kCmdReload = 33001;
constexpr int kCmdPlayAnimation = 33002;
constexpr int kCmdResetView = 33003;
constexpr int kCmdSceneNotes = 33004;
constexpr int kCmdUndo = 33005;
constexpr int kCmdRedo = 33006;
constexpr int kCmdFullScreenSlideShow = 33008;
constexpr int kCmdToolColor = 33010;
constexpr int kCmdToolShininess = 33011;
constexpr int kCmdToolTransparency = 33012;
constexpr int kCmdToolReplace = 33013;
constexpr int kCmdToolFilter = 33014;
constexpr int kCmdSaveEdits = 33015;
constexpr int kCmdShowMaterialBar = 33016;
constexpr int kCmdShowModelList = 33007;
constexpr int kCmdExportGltf = 33017;
constexpr int kCmdManual = 33018;
constexpr int kCmdShortcuts = 33019;
constexpr int kCmdFirstSceneCamera = 33100;
constexpr int kMaxSceneCameras = 100;

/** The number of a command in menus and toolbars, where the toolkit accepts only numbers below 32768. */
[[nodiscard]] constexpr int WidgetIdOf(int command) {
    return command - 30000;
}
[[nodiscard]] constexpr int CommandOfWidgetId(int widgetId) {
    return widgetId + 30000;
}
