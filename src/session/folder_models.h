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
/** The models inside a folder, as ListBeside lists them; its obj files if there are none. */
[[nodiscard]] std::vector<std::wstring> ListInside(const std::wstring& folder);
/** The entry before or after the current one; after the last comes the first. Empty for fewer than two
 * entries. For a current path that is not in the listing (compared exactly) Next gives the first entry,
 * Previous the last. */
[[nodiscard]] std::wstring Neighbour(const std::vector<std::wstring>& listing, const std::wstring& current,
                                     EStep step);

}  // namespace folder_models
