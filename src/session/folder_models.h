// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/** Stepping through the models of a folder. Paths are wide and absolute. */
namespace folder_models {

enum class EStep { Previous, Next };

/** The models beside a file: its folder's regular files, and links to such, with the endings 3ds, zip and orv in any
 * letter case. In one order over all endings, that of natural_order: by the names without their endings, then by the
 * endings; names that differ in letter case or leading zeros alone by the codes of their characters. Empty when the
 * folder cannot be listed. */
[[nodiscard]] std::vector<std::wstring> ListBeside(const std::wstring& path);
/** The models inside a folder, as ListBeside lists them; its obj files if there are none. */
[[nodiscard]] std::vector<std::wstring> ListInside(const std::wstring& folder);
/** The place of a path in a listing, compared exactly, from 1 on; 0 when it is not there. */
[[nodiscard]] std::size_t PlaceOf(const std::vector<std::wstring>& listing, const std::wstring& path);
/** The entry before or after the current one; after the last comes the first. Empty for fewer than two
 * entries. For a current path that is not in the listing (compared exactly) Next gives the first entry,
 * Previous the last. */
[[nodiscard]] std::wstring Neighbour(const std::vector<std::wstring>& listing, const std::wstring& current,
                                     EStep step);

}  // namespace folder_models
