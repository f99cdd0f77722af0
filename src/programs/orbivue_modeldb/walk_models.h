// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>

#include "base/CResult.h"
#include "programs/orbivue_modeldb/store_output.h"

/** Calls body with the key of each model that the options name: by keys, by a group, or all. Ends with the first failure.
 * BadArgument: what is given is no key; NotFound: no such group. The body may remove the model. */
[[nodiscard]] CStatus WalkModels(CModelStore& store, const CModelDbOptions& options,
                                 const std::function<CStatus(std::uint32_t)>& body);
/** The same for the models of one group, with their names. */
[[nodiscard]] CStatus WalkGroup(CModelStore& store, std::int64_t groupId,
                                const std::function<CStatus(const CModelSummary&)>& body);
/** The exit code for a failure of a walk. */
[[nodiscard]] EModelDbExit WalkFailureCode(const CError& error);
