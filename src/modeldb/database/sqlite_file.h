// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "base/CResult.h"

/** Marks a SQLite file as a store of models ("OrbM"). */
constexpr std::uint32_t kSqliteApplicationId = 0x4F72624D;

enum class ESqliteFile { Missing, Empty, Ours };

/** What a path leads to, found out without SQLite, which might already write to a file that it opens. BadFormat: something
 * else than a store of models; Unreadable: no regular file, or one that may not be read. */
[[nodiscard]] CResult<ESqliteFile> ProbeSqliteFile(const std::string& path);
