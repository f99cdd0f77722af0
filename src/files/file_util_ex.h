// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "base/text/utf8_text.h"

/** Paths, files and folders. Narrow text is UTF-8, but narrow paths may hold any bytes. Each wide function
 * does the same as the narrow one of its name, and returns paths as PathFromBytes makes them. A path is split
 * at '/' alone: a backslash is an ordinary character here. */
namespace file_util_ex {

/** True for a regular file or what a link to one leads to; false for a folder. */
[[nodiscard]] bool DoesFileExist(std::string_view path);
[[nodiscard]] bool DoesFileExist(std::wstring_view path);
[[nodiscard]] bool DoesFolderExist(std::string_view path);
[[nodiscard]] bool DoesFolderExist(std::wstring_view path);
/** Deletes one file (a link, not what it leads to). False when there is none, for a folder,
 * or when refused. */
bool DeleteFileW(std::string_view path);
bool DeleteFileW(std::wstring_view path);
/** Deletes as DeleteFileW does, and tells why it cannot; a file that is gone already is a success. */
[[nodiscard]] CStatus TryDeleteFile(std::string_view path);
/** Makes the folder and those above it. True also when it is there already. */
[[nodiscard]] bool Mkdir(std::string_view path);
[[nodiscard]] bool Mkdir(std::wstring_view path);
/** The same for a folder that is nobody else's: where it is made, only its user may look into it (0700). */
[[nodiscard]] bool MkdirPrivate(std::string_view path);
/** Deletes a folder with all that is in it, following no link. False for anything but a
 * folder, and for "/". */
bool Rmdir(std::string_view path);
bool Rmdir(std::wstring_view path);

/** What follows the last dot of the file name, case kept; empty for none and for a name like ".profile". */
[[nodiscard]] std::string GetFileExt(std::string_view path);
[[nodiscard]] std::wstring GetFileExt(std::wstring_view path);
/** What follows the last '/', with its extension. */
[[nodiscard]] std::string GetFileName(std::string_view path);
[[nodiscard]] std::wstring GetFileName(std::wstring_view path);
/** The path without its extension and dot. */
[[nodiscard]] std::string GetFileNameWithPath(std::string_view path);
[[nodiscard]] std::wstring GetFileNameWithPath(std::wstring_view path);
/** The folder part, without the '/' at its end; "/" for the root, empty when the path has no folder. */
[[nodiscard]] std::string GetFilePath(std::string_view path);
[[nodiscard]] std::wstring GetFilePath(std::wstring_view path);
/** The path with its extension replaced or added. ext may begin with a dot; empty takes
 * the extension away. */
[[nodiscard]] std::string SetFileExt(std::string_view path, std::string_view ext);
[[nodiscard]] std::wstring SetFileExt(std::wstring_view path, std::wstring_view ext);
/** folder + "/" + name, with one '/' between; the name alone when folder is empty. */
[[nodiscard]] std::string MakePath(std::string_view folder, std::string_view name);
[[nodiscard]] std::wstring MakePath(std::wstring_view folder, std::wstring_view name);
/** The path, resolved against folder when it is relative, without "." and "..". As in the system, ".." after
 * a link to a folder leads to the parent of the folder that the link points to. After something that is no
 * folder it leads nowhere, so it is kept. */
[[nodiscard]] std::string MakeAbsolute(std::string_view folder, std::string_view path);
[[nodiscard]] std::wstring MakeAbsolute(std::wstring_view folder, std::wstring_view path);

/** Appends the full paths of the folder's files, not of sub-folders, whose names match a mask: "*.ext" or
 * "*", any case of ASCII letters. No mask means all files. In the order of the names' bytes. False when the
 * folder cannot be listed. */
bool GetAllFiles(std::string_view folder, std::vector<std::string>& files,
                 std::span<const std::string> masks = {});
bool GetAllFiles(std::wstring_view folder, std::vector<std::wstring>& files,
                 std::span<const std::wstring> masks = {});
/** Appends the full paths of the folder's sub-folders, links to folders among them, in the
 * order of their names. */
bool GetSubDirs(std::string_view folder, std::vector<std::string>& folders);
bool GetSubDirs(std::wstring_view folder, std::vector<std::wstring>& folders);

/** Decides from a file's first bytes whether the rest is wanted. */
using CFirstBytesJudge = std::function<bool(std::span<const std::byte>)>;
/** Reads all bytes of a file, even if its size changes meanwhile. TooLarge: it has more than maxBytes; no
 * more than those are read. A pipe or device is read to its end; one that sends nothing for two seconds is
 * Unreadable. wantsRest, if given, is called once with the bytes of the first read, perhaps a single one;
 * when it returns false, those bytes are the result. cancelled may be null; when another thread sets it,
 * reading ends with Cancelled. */
[[nodiscard]] CResult<std::vector<std::byte>> ReadWholeFile(
    std::string_view path, std::uint64_t maxBytes = std::numeric_limits<std::uint64_t>::max(),
    const CFirstBytesJudge& wantsRest = {}, const std::atomic<bool>* cancelled = nullptr);
/** ReadWholeFile of a regular file that is none by a link: anything else is Unreadable, and not opened for longer than
 * it takes to see that. For files that a stranger's file names. */
[[nodiscard]] CResult<std::vector<std::byte>> ReadPlainFile(
    std::string_view path, std::uint64_t maxBytes = std::numeric_limits<std::uint64_t>::max());
/** The same for a wide path. */
[[nodiscard]] CResult<std::vector<std::byte>> GetFileData(
    std::wstring_view path, std::uint64_t maxBytes = std::numeric_limits<std::uint64_t>::max());
/** Replaces the file in one step, as CAtomicFile does: after a failure the old file is as before. */
[[nodiscard]] CStatus WriteFileAtomically(std::string_view path, std::span<const std::byte> bytes);
[[nodiscard]] CStatus WriteFileAtomically(std::string_view path, std::string_view text);
/** The same for what a person chose as the output of an export: see CAtomicFile about links. */
[[nodiscard]] CStatus WriteOutput(std::string_view path, std::span<const std::byte> bytes);

}  // namespace file_util_ex
