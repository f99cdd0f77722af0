// SPDX-License-Identifier: MIT
#pragma once

/** What this program does in the processes that a CWorkshop starts: called first in main(), before there is another
 * thread. */
namespace worker_command {

/** True where the arguments are those of such a process. */
[[nodiscard]] bool IsMeant(int argc, const char* const* argv);
/** Confines this process, does its one job and returns the exit code. */
[[nodiscard]] int Run(int argc, const char* const* argv);

}  // namespace worker_command
