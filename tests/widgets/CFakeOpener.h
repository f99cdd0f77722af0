// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <string>

#include "files/CTestFolder.h"

/** A stand-in, while it lives, for the desktop's opener of files and addresses: notes what it is given, a line each. */
class CFakeOpener {
  public:
    /** isAlone: no other program is there. */
    explicit CFakeOpener(bool isAlone = false) {
        Does("echo \"$1\" >>'" + (m_folder / "opened") + "'");
        ::setenv("PATH", (m_folder.Path() + (isAlone ? "" : ":" + m_pathBefore)).c_str(), 1);
    }
    CFakeOpener(const CFakeOpener&) = delete;
    CFakeOpener& operator=(const CFakeOpener&) = delete;
    ~CFakeOpener() { ::setenv("PATH", m_pathBefore.c_str(), 1); }

    /** A line of sh in its place. */
    void Does(const std::string& script) const {
        std::filesystem::permissions(m_folder.Add("xdg-open", "#!/bin/sh\n" + script + "\n"),
                                     std::filesystem::perms::owner_all);
    }
    /** What was opened since this was asked last. */
    [[nodiscard]] std::string TakeOpened() const {
        std::string opened = CTestFolder::TextOf(m_folder / "opened");
        if (!opened.empty()) std::filesystem::remove(m_folder / "opened");
        return opened;
    }

  private:
    CTestFolder m_folder;
    std::string m_pathBefore = ::getenv("PATH");
};
