// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "base/CResult.h"

struct CWorkerOrder;

/** What is done in a confined process with the file at worker_files::kInput. Failures: NoGraphics, WriteFailed, Unreadable
 * and NoSpace are the system's, all others the model's. */
namespace worker_jobs {

[[nodiscard]] CStatus Inspect(const CWorkerOrder& order);
/** The preview's bytes. */
[[nodiscard]] CResult<std::vector<std::byte>> DrawPreview(const CWorkerOrder& order);
/** Writes to worker_files::kPage. */
[[nodiscard]] CStatus WritePage(const CWorkerOrder& order);

}  // namespace worker_jobs
