// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "files/CAtomicFile.h"

/** Files that belong together and get their names together, in the order in which they were added: all of
 * them or none. A group that is destroyed without Commit changes nothing. Of a large group only the first files
 * are held open without a name; a killed process leaves the others under temporary names. */
class CAtomicFileGroup {
  public:
    static constexpr std::size_t kMostOpen = 32;

    [[nodiscard]] CStatus Add(CAtomicFile file);
    /** Gives all files their names; call it once. Where one of them fails, those before it are undone: a
     * replaced file gets its name back, a new one is deleted. */
    [[nodiscard]] CStatus Commit();

  private:
    std::vector<CAtomicFile> m_members;
};
