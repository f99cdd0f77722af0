// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "model/edit/CEdit.h"

class CNoteList;

/** Edits as the lists of a scene script. A list is a row of entries, each ended by ';', with fields divided by '|':
 * "node>material|value;", "node|x|y|z;". Names, and paths as well, are taken as they stand. */
namespace edit_lists {

/** The keys of the lists, in the order in which they are applied. */
inline constexpr std::array<std::string_view, 8> kKeys{
    "ReplaceNode", "MoveNode", "RotateNode", "DeleteNode", "Texture", "Transparency", "Shininess", "Color"};
/** One text for each of kKeys. */
using CLists = std::array<std::string, kKeys.size()>;

/** The number of the key, in kKeys, of the list that an edit belongs to. */
[[nodiscard]] std::size_t KeyOf(const CEdit& edit);

/** The edits that the lists hold, in the order of kKeys. A material edit is left out if a later one has the same target.
 * Entries that are none, and numbers that cannot be used, are left out and noted; numbers too many are limited. */
[[nodiscard]] std::vector<CEdit> EditsOf(const CLists& lists, CNoteList& notes);
/** The lists of edits, each in the order of its own edits. BadArgument for an edit that would be read back as another. */
[[nodiscard]] CResult<CLists> ListsOf(std::span<const CEdit> edits);

}  // namespace edit_lists
