// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "base/CResult.h"
#include "model/edit/CEdit.h"

/** Edits with the same effect as these in their order, in the order in which a script applies them: see
 * edit_lists::kKeys. What later edits make void is left out. BadArgument where that order cannot give the same scene. */
[[nodiscard]] CResult<std::vector<CEdit>> FoldEdits(std::span<const CEdit> edits);
