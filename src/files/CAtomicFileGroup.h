// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "files/CAtomicFile.h"

/** Files that belong together and get their names together, in the order in which they were added: all of
 * them or none. A group that is destroyed without Commit changes nothing. */
class CAtomicFileGroup {
  public:
    /** path (UTF-8) is the one that the file was created for. */
    void Add(std::string path, CAtomicFile file);
    /** Gives all files their names; call it once. Where one of them fails, those before it are undone: a
     * replaced file is restored as a new file with the same bytes, a new one is deleted. */
    [[nodiscard]] CStatus Commit();

  private:
    struct CMember {
        std::string path;
        CAtomicFile file;
    };
    std::vector<CMember> m_members;
};
