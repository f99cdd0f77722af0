// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "process/file_access.h"

/** The files that reading these inputs needs, and a folder to write into, which may be empty. Call it while there is one
 * thread, see FilesNamedBy. */
[[nodiscard]] CFileAccess FilesFor(std::span<const std::string> inputs, const std::string& outputFolder,
                                   std::size_t scene);
