// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"

/** Makes the user's own store of models where there is none: with the samples that lie in a folder (those that are there) and
 * their previews in "previews" beside it. It gets its name when it is complete, so that it is filled once, whoever is killed or
 * starts at the same time; what the user removes from it stays away. Busy: another process is at it for too long.
 *
 * A store that is made while there are no samples gets them at a later call, when there are some: until then a file beside it,
 * with "-unfilled" behind its name, says so. That it cannot be filled is no failure. */
[[nodiscard]] CStatus MakeUserStore(const std::string& path, const std::string& samplesFolder);
