// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
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

/** How many edits of each of kKeys a scene can have; entries beyond are not used. Some take time in proportion to the
 * objects of the scene. */
inline constexpr std::array<std::size_t, kKeys.size()> kMost{100,   10'000, 10'000, 1'000,
                                                             1'000, 4'000,  4'000,  4'000};

/** How many entries of one list are read. */
inline constexpr std::size_t kMostEntries = 20'000;

/** The number of the key, in kKeys, of the list that an edit belongs to. */
[[nodiscard]] std::size_t KeyOf(const CEdit& edit);

/** The next entry of a list, which is taken off it, without its ';'. Nothing at the end. */
[[nodiscard]] std::optional<std::string_view> NextEntry(std::string_view& list);
/** The edit that an entry of the list of kKeys[key] says; an error for one that says none. */
[[nodiscard]] CResult<CEdit> EditOf(std::size_t key, std::string_view entry);

/** The edits that the lists hold, in the order of kKeys. A material edit is left out if a later one of its list has
 * the same target, as it would have no effect. Entries that say no edit are left out and noted. */
[[nodiscard]] std::vector<CEdit> EditsOf(const CLists& lists, CNoteList& notes);
/** The lists of edits, each in the order of its own edits. BadArgument for an edit that would be read back as another. */
[[nodiscard]] CResult<CLists> ListsOf(std::span<const CEdit> edits);

/** The edits without those that a later one of the same kind and target makes void. */
[[nodiscard]] std::vector<CEdit> WithoutRepeated(std::vector<CEdit> edits);

}  // namespace edit_lists
