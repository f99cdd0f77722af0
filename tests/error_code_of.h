// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "base/CResult.h"

/** Why there is no value; nothing where there is one. */
template <class T>
std::optional<EErrorCode> CodeOf(const CResult<T>& result) {
    return result ? std::nullopt : std::optional(result.Error().code);
}
