// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/** The files that a process may use: UTF-8 paths of files, or of folders with all below them. What is missing is
 * passed over. */
struct CFileAccess {
    std::vector<std::string> readable;
    std::vector<std::string> listable;  ///< folders whose names alone may be read
    std::vector<std::string> writable;  ///< folders in which files may be made, written, renamed and deleted
    std::vector<std::string> trees;     ///< the same, and folders made and deleted
};

/** Lets this process and its later threads, for good, open no files but these, and the system's libraries and what they
 * need to start. Whether a file is there can still be seen. Call it before there is another thread. False where the
 * system cannot do that; then nothing has changed. */
[[nodiscard]] bool RestrictFiles(const CFileAccess& access);
