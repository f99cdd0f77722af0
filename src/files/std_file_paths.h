// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"

/** Where the program's files are. Narrow text is UTF-8; no path ends in '/'. Usable from several threads. */
namespace std_file_paths {

/** Sets the name after which, in lower case, the folders are called; "Orbivue" by default. */
void SetAppName(std::string_view name);
void SetAppName(std::wstring_view name);

/** The file's path in the settings folder ($XDG_CONFIG_HOME or ~/.config), which is not made: CIniFile::Save does it, so that what
 * only reads settings leaves nothing behind. */
[[nodiscard]] std::string GetIniFilePath(std::string_view fileName);
[[nodiscard]] std::wstring GetIniFilePath(std::wstring_view fileName);
/** The folder for what can be made again ($XDG_CACHE_HOME or ~/.cache), made (0700) when missing. */
[[nodiscard]] std::string GetCacheFolderPath();
/** The folder above it, where every program has its folder, and some share theirs. */
[[nodiscard]] std::string GetCacheHomePath();
/** The folder for the user's data ($XDG_DATA_HOME or ~/.local/share), made (0700) when missing. */
[[nodiscard]] std::string GetUserDataFolderPath();

/** This process's temporary folder: private (0700), made on demand, the same until DeleteTempDir. Empty when
 * it cannot be made. */
[[nodiscard]] std::string GetTempDir();
/** The same, wide. */
[[nodiscard]] std::wstring GetTempDirName();
/** The path of a file of that name in the temporary folder. */
[[nodiscard]] std::string GetTempFilePath(std::string_view fileName);
[[nodiscard]] std::wstring GetTempFilePath(std::wstring_view fileName);
/** Deletes the temporary folder with all in it. Does nothing when none was made. */
void DeleteTempDir();

/** The folder that the program file is in. */
[[nodiscard]] std::string GetProgramFolderPath();
/** The application's own folder, lib/orbivue beside the programs' bin folder: what only it uses and nobody starts by
 * hand lies there, as a bin folder holds programs for users and no folders. The build tree has the same one. */
[[nodiscard]] std::string GetAppFolderPath();
/** Full path of a file or folder of the program's data ("images/logo.png", "languages"): in share/orbivue
 * beside the program's bin folder, else, for a program that runs in its build tree, in the data built there,
 * else in the source's data folder. Where it is nowhere, the path it would have when installed. */
[[nodiscard]] std::string GetDataPath(std::string_view relative);
[[nodiscard]] std::wstring GetDataPath(std::wstring_view relative);
/** GetDataPath of a picture or icon of the program's. */
[[nodiscard]] std::string GetImgPath(std::string_view fileName);
[[nodiscard]] std::wstring GetImgPath(std::wstring_view fileName);
/** The names of the installed languages' folders, sorted; English ("en") is one, though it needs no catalogue. */
void GetLngDirNames(std::vector<std::wstring>& names);
/** Like GetDataPath, for what is compiled for the machine: lib/orbivue, or the build tree. */
[[nodiscard]] std::string GetPluginPath(std::string_view fileName);

/** Opens an address ("https://...") or a file with the desktop's program for it, as StartProgram starts one,
 * in the file's folder. Waits up to a second for the desktop's answer, so windows call it off the main
 * thread. NotFound with "xdg-open" in where: the desktop's opener itself is not installed. */
[[nodiscard]] CStatus LaunchBrowser(std::string_view urlOrPath);
[[nodiscard]] CStatus LaunchBrowser(std::wstring_view urlOrPath);

}  // namespace std_file_paths
