// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/** True for the name of a file that a scene can be saved to: it ends in ".3ds" in any letter case, or
 * in ".zip". */
[[nodiscard]] bool IsNameToSave(std::wstring_view path);
/** True if the path ends in "zip" in lower case; only then an archive is written. */
[[nodiscard]] bool IsZipName(std::wstring_view path);
