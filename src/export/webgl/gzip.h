// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <vector>

/** The bytes packed as a gzip file without name and time, so that the same bytes give the same file. Throws
 * std::bad_alloc. */
[[nodiscard]] std::vector<std::byte> Gzip(std::span<const std::byte> bytes);
