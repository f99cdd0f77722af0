// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/** Stepping through the models of a folder. Paths are wide and absolute. */
namespace folder_models {

enum class EStep { Previous, Next };

/** The models beside a file: its folder's files with the endings 3ds and zip in any letter case, in the
 * order of their names. Empty when the folder cannot be listed. */
[[nodiscard]] std::vector<std::wstring> ListBeside(const std::wstring& path);
/** The models inside a folder, as ListBeside gives them, or else its obj files. */
[[nodiscard]] std::vector<std::wstring> ListInside(const std::wstring& folder);
/** The entry before or after the current one, round the ends. Empty for fewer than two entries. A
 * current path that is not in the listing (compared exactly) has the first entry after it and the
 * last one before it. */
[[nodiscard]] std::wstring Neighbour(const std::vector<std::wstring>& listing, const std::wstring& current,
                                     EStep step);

}  // namespace folder_models
