// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"

/** Makes the user's own store of models where there is none: with the samples that lie in a folder (those that are there) and
 * their previews in "previews" beside it. It gets its name when it is complete, so that it is filled once, whoever is killed or
 * starts at the same time; what the user removes from it stays away. Busy: another process is at it for too long. */
[[nodiscard]] CStatus MakeUserStore(const std::string& path, const std::string& samplesFolder);
