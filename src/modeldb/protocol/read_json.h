// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "base/CResult.h"
#include "modeldb/bytes/CBlobHash.h"

/** JSON that a stranger sent. Only the sources of this room include this. */
namespace read_json {

struct CJsonBounds {
    std::size_t bytes = 0;
    std::size_t values = 0;  ///< of all depths
};
/** The deepest that lists and objects lie in each other; nothing of the protocol comes near it. */
constexpr int kDepth = 8;

/** Bounds are checked before anything is built. TooLarge; BadFormat: no JSON, or no UTF-8. */
[[nodiscard]] CResult<nlohmann::json> Parse(std::string_view text, const CJsonBounds& bounds);

/** A text of 1 to so many bytes, without a zero byte; nothing for anything else. */
[[nodiscard]] std::optional<std::string> NameOf(const nlohmann::json& value, std::size_t mostBytes);
/** The same for a text that may be empty. */
[[nodiscard]] std::optional<std::string> TextOf(const nlohmann::json& value, std::size_t mostBytes);
/** A whole number from 0 on. */
[[nodiscard]] std::optional<std::uint64_t> NumberOf(const nlohmann::json& value, std::uint64_t most);
[[nodiscard]] std::optional<std::uint32_t> KeyOf(const nlohmann::json& value);
[[nodiscard]] std::optional<CBlobHash> HashOf(const nlohmann::json& value);

/** A member; null where value is no object or has none of that name. */
[[nodiscard]] const nlohmann::json& Member(const nlohmann::json& value, const char* name);

}  // namespace read_json
