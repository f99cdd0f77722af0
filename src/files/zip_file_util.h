// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/CResult.h"

class CAtomicFile;

/** Writes zip archives. Narrow text is UTF-8. */
namespace zip_file_util {

/** Packs files into an archive, each under its file name alone (in UTF-8), and replaces the archive's file in one
 * step. A path listed twice is stored once. Fails, and leaves the target as it was, when a file cannot
 * be read, when two files share a name (BadArgument), when the list is empty, or when the archive
 * cannot be written. */
[[nodiscard]] CStatus WriteZip(std::string_view archivePath, std::span<const std::string> files);
/** The same into a file that was made for it, which gets its name. comment: the archive's, at most 65,535 bytes. */
[[nodiscard]] CStatus WriteZip(CAtomicFile archive, std::span<const std::string> files,
                               std::string_view comment);
/** WriteZip; true when it succeeded. */
[[nodiscard]] bool CreateZip(std::string_view archivePath, std::span<const std::string> files);
[[nodiscard]] bool CreateZip(std::wstring_view archivePath, std::span<const std::wstring> files);

}  // namespace zip_file_util
