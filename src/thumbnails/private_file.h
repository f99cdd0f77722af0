// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "base/CResult.h"

/** Files that only the user can read, in folders that only the user can enter. */
namespace private_file {

/** Makes the folder (0700) where it is missing; the one above must be there. */
[[nodiscard]] bool MakeFolder(const std::string& folder);
/** Writes the file (0600) under a temporary name and renames it, so that it is never seen in part. What has the name
 * is replaced, a link and not what it leads to. It is not synced to the disk: for what can be made again. */
[[nodiscard]] CStatus Write(const std::string& folder, const std::string& name,
                            std::span<const std::byte> bytes);

}  // namespace private_file
