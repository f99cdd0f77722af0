// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/** True for the name of a file that a scene can be saved to: it ends in ".3ds" in any letter case, or in
 * ".zip". */
[[nodiscard]] bool IsNameToSave(std::wstring_view path);
/** True for the ending "zip" in small letters, which alone has an archive written. */
[[nodiscard]] bool IsZipName(std::wstring_view path);
