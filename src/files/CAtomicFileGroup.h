// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "files/CAtomicFile.h"

/** Files that belong together and get their names together, in the order in which they were added: all of
 * them or none. Destroyed without Commit, nothing has changed. */
class CAtomicFileGroup {
  public:
    /** path (UTF-8) is the one that the file was created for. */
    void Add(std::string path, CAtomicFile file);
    /** Where one of them cannot be named, those before it are taken back: what was there is there again, in a
     * new file with the same bytes, and what is new is deleted. Call it once. */
    [[nodiscard]] CStatus Commit();

  private:
    struct CMember {
        std::string path;
        CAtomicFile file;
    };
    std::vector<CMember> m_members;
};
