// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

#include "base/CResult.h"
#include "model/edit/CEdit.h"

/** Replaces the edit lists in a section of a scene script so that ReadScript gives edits with the same effect as these
 * in their order. Everything else in the file stays as it is, byte for byte, and so do entries of the lists that ReadScript
 * does not use; a file or section that is not there is made, with modelPath as its model. The file is replaced in one
 * step. Paths of files below the script's folder are written relative to it.
 *
 * edits: all that have been applied to the model since it was opened, those of the script itself first. What later ones
 * have made void is left out. Refused, and nothing is written, for what a script cannot say: a name with ';' or '|', for
 * instance. Paths are UTF-8; modelPath is not needed for a section that names a model. */
[[nodiscard]] CStatus SaveEdits(std::string_view scriptPath, std::string_view section,
                                std::span<const CEdit> edits, std::string_view modelPath = {});
