// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/** Texts in the queries of addresses. */
namespace percent_text {

/** Letters, digits and -._~ stand for themselves, all other bytes as %XX. */
void Append(std::string& out, std::string_view text);
[[nodiscard]] std::string Write(std::string_view text);

/** The text that was written so, or by a browser's form ("+" is a blank). Nothing unless the escapes are whole, and
 * what they mean is UTF-8 without a zero byte, of at most mostBytes. */
[[nodiscard]] std::optional<std::string> Read(std::string_view text, std::size_t mostBytes);

}  // namespace percent_text
